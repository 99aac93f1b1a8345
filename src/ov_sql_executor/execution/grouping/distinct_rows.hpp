#ifndef OV_SQL_EXECUTOR_EXECUTION_GROUPING_DISTINCT_ROWS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_GROUPING_DISTINCT_ROWS_HPP_

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "ov_sql_executor/support/large_memory.hpp"
#include "ov_sql_executor/values/keyed_hash.hpp"
#include "ov_sql_executor/values/packed_values.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// A set of rows of one width, by group-key equality, numbered in first-seen order: an open-addressing hash table over
// rows that lie in one array. Allocates nothing for a single row.
//
//    hash:  | top bits: where probing starts | ... | low 7 bits |
//    tags_[position]    1 byte:   0 for a free position, or 0x80 | the low 7 bits
//    slots_[position]   8 bytes:  the hash, and the row's number
//    keys_[number * width + column]
class distinct_rows {
 public:
  // Requires, of every key below: key.size() == width.
  explicit distinct_rows(std::size_t width) : width_(width) {}

  struct place {
    std::size_t index;  // among the distinct rows
    bool is_new;
  };
  place find_or_insert(std::span<const value_view> key) { return find_or_insert(key, hash_of(key)); }

  // find_or_insert in steps, so that the cache misses of several keys overlap. Take each step for all keys, then the
  // next:
  //
  //    step                    reads                    prefetches
  //    hash_of                 the key
  //    prefetch_slot                                    the tag and slot where probing starts
  //    prefetch_row            tags and slots           the row with that hash; returns its index, if there is one
  //    prefetch_texts          the row                  its packed texts
  //    find_or_insert          all of these
  std::uint32_t hash_of(std::span<const value_view> key) const {
    assert(key.size() == width_);
    return static_cast<std::uint32_t>((*hash_)(key));
  }
  void prefetch_slot(std::uint32_t hash) const;
  std::optional<std::size_t> prefetch_row(std::uint32_t hash) const;
  void prefetch_texts(std::size_t index) const;
  place find_or_insert(std::span<const value_view> key, std::uint32_t hash);

  // The row that equals the key, if there is one.
  std::optional<std::size_t> find(std::span<const value_view> key) const;

  std::size_t size() const { return size_; }

  // How much memory the set takes.
  std::size_t byte_count() const {
    return keys_.byte_count() + tags_.capacity() * sizeof(tags_[0]) + slots_.capacity() * sizeof(slot);
  }

  // Valid until: the set grows. Requires: index < size(); column < width.
  value_view value_at(std::size_t index, std::size_t column) const {
    assert(index < size_ && column < width_);
    return keys_[index * width_ + column];
  }

 private:
  struct slot {
    std::uint32_t hash;
    std::uint32_t index;  // of a row
  };

  bool equals(std::size_t index, std::span<const value_view> key) const;
  std::size_t append(std::span<const value_view> key);
  void grow();
  std::size_t first_position(std::uint32_t hash) const { return std::size_t{hash} >> shift_; }
  std::size_t next_position(std::size_t position) const { return (position + 1) & (tags_.size() - 1); }
  std::size_t free_position(std::uint32_t hash) const;
  void set_slot(std::size_t position, slot entered);

  const keyed_hash* hash_ = &keyed_hash::of_process();
  std::size_t width_;
  std::size_t size_ = 0;
  packed_values keys_{packed_values::texts::packed};
  // The number of positions is a power of two, and at most half of them are in use. Probing reads tags first: they fit
  // into the cache when the slots do not.
  large_vector<std::uint8_t> tags_;
  large_vector<slot> slots_;
  unsigned shift_ = 32;  // hash >> shift_ is the first position
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_DISTINCT_ROWS_HPP_
