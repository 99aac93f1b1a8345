#ifndef OV_SQL_EXECUTOR_EXECUTION_ROW_SET_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ROW_SET_HPP_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// The distinct rows of one width, by group-key equality, in first-seen order: an open-addressing index over rows that
// lie in one array. A row that is there already is found without allocating.
class row_set {
 public:
  explicit row_set(std::size_t width) : width_(width) {}

  struct place {
    std::size_t index;  // among the distinct rows
    bool is_new;
  };
  place find_or_insert(std::span<const value_view> key);

  std::size_t size() const { return hashes_.size(); }
  std::span<const value> row_at(std::size_t index) const { return {values_.data() + index * width_, width_}; }

 private:
  bool equals(std::size_t index, std::span<const value_view> key) const;
  std::size_t first_slot(std::uint64_t hash) const;
  std::size_t append(std::span<const value_view> key, std::uint64_t hash);
  void grow();

  std::size_t width_;
  std::vector<value> values_;
  std::vector<std::uint64_t> hashes_;  // of each row
  std::vector<std::uint32_t> slots_;   // index of a row plus one, or 0; a power of two of them, at most half in use
  unsigned shift_ = 64;                // of a mixed hash to its slot
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ROW_SET_HPP_
