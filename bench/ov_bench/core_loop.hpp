#ifndef BENCH_OV_BENCH_CORE_LOOP_HPP_
#define BENCH_OV_BENCH_CORE_LOOP_HPP_

#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <string_view>

#include "ovcoredb/ovcoredb.h"
#include "sample.hpp"

namespace bench {

// Hand-written access to the core, without any query engine: index walks and single columns.
class core_loop {
 public:
  explicit core_loop(const sample& data);

  std::size_t rows() const { return rows_; }

  struct object {
    std::uint64_t number;
    std::uint64_t second_word;
  };

  // A column or an index of a table, looked up once: columns "item.a", indexes "item.by_a".
  std::uint32_t column(const std::string& name) const { return columns_.at(name); }
  std::uint64_t index(const std::string& name) const { return indexes_.at(name); }

  // Calls take(object) for each object of the index, in order, until it returns false.
  template <class Take>
  void walk(std::uint64_t index, Take&& take) const {
    static constexpr std::array<std::uint8_t, 8> everything = {0xC0};
    walk_between(index, everything.data(), everything.data(), take);
  }

  // The same for int64 keys from first to last, both included.
  template <class Take>
  void walk(std::uint64_t index, std::int64_t first, std::int64_t last, Take&& take) const {
    walk_between(index, key(first).data(), key(last).data(), take);
  }

  // Calls take like the others, but not for the first objects. Returns how many it passed over.
  template <class Take>
  std::uint64_t walk_behind(std::uint64_t index, std::uint64_t first_objects, Take&& take) const {
    static constexpr std::array<std::uint8_t, 8> everything = {0xC0};
    return walk_between(index, everything.data(), everything.data(), take, first_objects);
  }

  std::int64_t number(object from, std::uint32_t column) const {
    std::int64_t value = 0;
    orv_context_get_long(context_, from.number, from.second_word, column, &value);
    return value;
  }
  std::int64_t decimal(object from, std::uint32_t column) const {
    std::int64_t value = 0;
    orv_context_get_decimal(context_, from.number, from.second_word, column, &value);
    return value;
  }
  object reference(object from, std::uint32_t column) const {
    ORV_REFERENCE_VALUE at{};
    orv_context_get_reference(context_, from.number, from.second_word, column, &at);
    return {at.object_number, at.high_part << 16 | at.low_part};
  }
  std::u16string_view text(object from, std::uint32_t column) const {
    const std::uint8_t* block = nullptr;
    if (orv_context_get_string(context_, from.number, from.second_word, column, &block) != ORV_OK) return {};
    std::uint32_t count = 0;
    std::memcpy(&count, block, sizeof count);
    return {reinterpret_cast<const char16_t*>(block + sizeof count), count};
  }

 private:
  using key_bytes = std::array<std::uint8_t, 16>;
  static key_bytes key(std::int64_t value);

  template <class Take>
  std::uint64_t walk_between(std::uint64_t index, const std::uint8_t* first, const std::uint8_t* last, Take&& take,
                             std::uint64_t to_skip = 0) const {
    std::uint64_t iterator = 0;
    std::uint64_t skipped = 0;
    constexpr std::uint32_t inclusive = ORV_ITERATOR_FIRST_INCLUSIVE | ORV_ITERATOR_LAST_INCLUSIVE;
    if (orv_context_create_iterator(context_, index, inclusive, first, last, &iterator) != ORV_OK) return 0;
    if (to_skip != 0) orv_iterator_skip(iterator, to_skip, &skipped);
    ORV_REFERENCE_VALUE at{};
    while (orv_iterator_next(iterator, &at) == ORV_OK && at.object_number != 0) {
      if (!take(object{at.object_number, at.high_part << 16 | at.low_part})) break;
    }
    orv_iterator_free(iterator);
    return skipped;
  }

  std::uint64_t context_;
  std::size_t rows_;
  std::map<std::string, std::uint32_t> columns_;
  std::map<std::string, std::uint64_t> indexes_;
};

}  // namespace bench

#endif  // BENCH_OV_BENCH_CORE_LOOP_HPP_
