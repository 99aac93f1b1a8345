#ifndef OV_SQL_EXECUTOR_EXECUTION_KEEPING_EQUALITY_INDEX_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEEPING_EQUALITY_INDEX_HPP_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ov_sql_executor/execution/grouping/distinct_rows.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Finds the rows whose keys, one or more for each row, equal values as the comparison operators mean it: numbers meet
// across types. Rows are numbered from 0 on in the order in which they are added.
class equality_index {
 public:
  static constexpr std::uint32_t none = ~std::uint32_t{0};

  // key_count: how many keys each row has; of every list below.
  explicit equality_index(std::size_t key_count = 1) : kinds_(key_count), keys_(key_count) {}

  // The keys of the next row; changes the views. Throws std::bad_variant_access for the view of a valueless value.
  void add(std::span<value_view> keys);

  std::size_t size() const { return next_.size(); }

  // How much memory the index takes.
  std::size_t byte_count() const;

  // Whether comparing each value with the keys at its place has an answer, which is NULL where one of them is.
  // Otherwise there are keys of several kinds, or of another one.
  bool compare_with(std::span<const value_view> values) const;

  // The first row whose keys equal the values, the next one with the same keys, and none after the last. Changes the
  // views. Requires compare_with, and values that are not NULL.
  std::uint32_t find_first(std::span<value_view> values) const;
  std::uint32_t next_of(std::uint32_t row_number) const { return next_[row_number]; }

  // The rows with a key that is NULL.
  const std::vector<std::uint32_t>& nulls() const { return nulls_; }

 private:
  struct chain {
    std::uint32_t first;
    std::uint32_t last;
  };

  std::vector<unsigned> kinds_;  // of the keys at each place that are not NULL: a bit for what compares with itself
  distinct_rows keys_;           // in the form in which equal ones are alike; without NaN, which equals nothing
  std::vector<chain> rows_;      // of each distinct list of keys
  std::vector<std::uint32_t> next_;
  std::vector<std::uint32_t> nulls_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEEPING_EQUALITY_INDEX_HPP_
