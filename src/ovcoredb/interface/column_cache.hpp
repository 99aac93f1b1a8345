// Remembers where the values of columns lie: what a getter finds for one object holds for its neighbours, too.
#ifndef OVCOREDB_INTERFACE_COLUMN_CACHE_HPP_
#define OVCOREDB_INTERFACE_COLUMN_CACHE_HPP_

#include <array>
#include <cstddef>
#include <cstdint>

#include "ovcoredb/storage/column.hpp"
#include "ovcoredb/storage/place_directory.hpp"

namespace ovcoredb {

// The values of one column for the objects of one run.
struct cached_column {
  std::uint64_t name = 0;   // of type, column and tag; 0: nothing is cached
  std::uint64_t first = 0;  // object number
  std::uint64_t count = 0;
  std::uint64_t row_of_first = 0;
  const column* values = nullptr;

  static std::uint64_t name_of(column_type type, std::uint32_t column, std::uint16_t tag) {
    return std::uint64_t{static_cast<std::uint8_t>(type)} << 48 | std::uint64_t{column} << 16 | tag;
  }
  std::uint64_t row_of(std::uint64_t number) const { return number - first + row_of_first; }
};

class column_cache {
 public:
  // The only place where the column can be cached.
  const cached_column& slot_of(std::uint32_t column, std::uint16_t tag) const { return slots_[position(column, tag)]; }

  void put(std::uint32_t column, std::uint16_t tag, const place_run& run, const ovcoredb::column& values) {
    slots_[position(column, tag)] = {cached_column::name_of(values.type(), column, tag), run.first, run.count,
                                     run.place.row(), &values};
    is_empty_ = false;
  }

  void clear() {
    if (is_empty_) return;  // a load clears for object after object
    slots_.fill({});
    is_empty_ = true;
  }

 private:
  // Columns of one table have different slots, and so do the first columns of two tables that are read in turns.
  static std::size_t position(std::uint32_t column, std::uint16_t tag) {
    return (column + std::uint32_t{tag} * 17) % slot_count;
  }

  static constexpr std::size_t slot_count = 64;
  std::array<cached_column, slot_count> slots_;
  bool is_empty_ = true;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INTERFACE_COLUMN_CACHE_HPP_
