#ifndef OV_SQL_EXECUTOR_EXECUTION_GROUPING_DISTINCT_ROWS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_GROUPING_DISTINCT_ROWS_HPP_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "ov_sql_executor/support/large_memory.hpp"
#include "ov_sql_executor/values/keyed_hash.hpp"
#include "ov_sql_executor/values/packed_values.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// The distinct rows of one width, by group-key equality, in first-seen order: an open-addressing index over rows that
// lie in one array. Neither finding a row nor keeping a new one allocates for that row alone.
class distinct_rows {
 public:
  explicit distinct_rows(std::size_t width) : width_(width) {}

  struct place {
    std::size_t index;  // among the distinct rows
    bool is_new;
  };
  place find_or_insert(std::span<const value_view> key) { return find_or_insert(key, hash_of(key)); }

  // The same in steps, for who has several keys and wants their memory to come at the same time. Behind the hash, each
  // step prefetches what the next one looks at: the place that the hash stands for; the row with that hash, if there is
  // one; what of the row lies elsewhere.
  std::uint32_t hash_of(std::span<const value_view> key) const { return static_cast<std::uint32_t>((*hash_)(key)); }
  void prefetch_place(std::uint32_t hash) const;
  std::optional<std::size_t> prefetch_row(std::uint32_t hash) const;
  void prefetch_further(std::size_t index) const;
  place find_or_insert(std::span<const value_view> key, std::uint32_t hash);

  // The row that equals the key, if there is one.
  std::optional<std::size_t> find(std::span<const value_view> key) const;

  std::size_t size() const { return size_; }

  // A value of one of the rows, valid until the set grows.
  value_view value_at(std::size_t index, std::size_t column) const { return keys_[index * width_ + column]; }

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
  void enter(std::size_t position, slot entered);

  const keyed_hash* hash_ = &keyed_hash::of_process();
  std::size_t width_;
  std::size_t size_ = 0;
  packed_values keys_{packed_values::texts::packed};
  // A power of two of positions, at most half in use; the top bits of a hash say where to begin. Most of what is
  // looked for is told by a tag, a byte with some other bits of the hash, or 0 where the position is free: tags are few
  // enough to stay near the processor when the slots are not.
  large_vector<std::uint8_t> tags_;
  large_vector<slot> slots_;
  unsigned shift_ = 32;  // of a hash to its position
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_DISTINCT_ROWS_HPP_
