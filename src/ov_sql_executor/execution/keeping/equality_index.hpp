#ifndef OV_SQL_EXECUTOR_EXECUTION_KEEPING_EQUALITY_INDEX_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEEPING_EQUALITY_INDEX_HPP_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "ov_sql_executor/execution/grouping/distinct_rows.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Finds the rows whose key equals a value, as the comparison operators mean it: numbers meet across types. Rows are
// numbered from 0 on in the order in which they are added.
class equality_index {
 public:
  static constexpr std::uint32_t none = ~std::uint32_t{0};

  // The key of the next row. Throws std::bad_variant_access for the view of a valueless value.
  void add(const value_view& key);

  std::size_t size() const { return next_.size(); }
  std::size_t byte_count() const { return size() * (sizeof next_[0] + 24); }

  // Whether comparing the value with each key has an answer, which is NULL where one of them is. Otherwise there are
  // keys of several kinds, or of another one.
  bool compares_with(const value_view& any) const;

  // The first row whose key equals the value, the next one with the same key, and none after the last. Requires
  // compares_with.
  std::uint32_t find_first(const value_view& any) const;
  std::uint32_t next_of(std::uint32_t row_number) const { return next_[row_number]; }

  // The rows whose key is NULL.
  const std::vector<std::uint32_t>& nulls() const { return nulls_; }

 private:
  struct chain {
    std::uint32_t first;
    std::uint32_t last;
  };

  unsigned kinds_ = 0;       // of the keys that are not NULL, a bit for each kind that compares with itself
  distinct_rows keys_{1};    // in the form in which equal ones are alike
  std::vector<chain> rows_;  // of each distinct key
  std::vector<std::uint32_t> next_;
  std::vector<std::uint32_t> nulls_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEEPING_EQUALITY_INDEX_HPP_
