#ifndef OV_SQL_EXECUTOR_EXECUTION_ROW_SET_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ROW_SET_HPP_

#include <cstddef>
#include <cstdint>
#include <span>

#include "ov_sql_executor/values/keyed_hash.hpp"
#include "ov_sql_executor/values/large_memory.hpp"
#include "ov_sql_executor/values/value_view.hpp"
#include "ov_sql_executor/values/view_keeper.hpp"

namespace ov::sql_executor {

// The distinct rows of one width, by group-key equality, in first-seen order: an open-addressing index over rows that
// lie in one array. Neither finding a row nor keeping a new one allocates for that row alone. A few rows do without the
// index: where each of many groups counts its distinct values, most of them have few.
class row_set {
 public:
  explicit row_set(std::size_t width) : width_(width) {}

  struct place {
    std::size_t index;  // among the distinct rows
    bool is_new;
  };
  place find_or_insert(std::span<const value_view> key);

  std::size_t size() const { return size_; }

  // Good until the next insertion.
  std::span<const value_view> row_at(std::size_t index) const { return {keys_.data() + index * width_, width_}; }

 private:
  struct slot {
    std::uint32_t hash = 0;
    std::uint32_t entry = 0;  // index of a row plus one, or 0
  };

  bool equals(std::size_t index, std::span<const value_view> key) const;
  std::size_t append(std::span<const value_view> key);
  void index_rows();
  void grow();
  void enter(slot entered);

  const keyed_hash& hash_ = keyed_hash::of_process();
  std::size_t width_;
  std::size_t size_ = 0;
  large_vector<value_view> keys_;
  view_keeper keeper_;
  large_vector<slot> slots_;  // a power of two, at most half in use, or none; the top bits of a hash say where to begin
  unsigned shift_ = 32;       // of a hash to its slot
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ROW_SET_HPP_
