#ifndef OV_SQL_EXECUTOR_EXECUTION_ROWS_KEPT_ROWS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ROWS_KEPT_ROWS_HPP_

#include <cstddef>
#include <vector>

#include "ov_sql_executor/execution/rows/reference_list.hpp"
#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/packed_values.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// Rows put aside by the million: one behind the other, without an allocation for each. Rows of references, which scans
// and their joins yield, are kept as such, which takes less memory; giving them away takes nothing off.
class kept_rows {
 public:
  // How often rows are asked for: see packed_values.
  enum class given { once, often };
  explicit kept_rows(given each)
      : values_(each == given::once ? packed_values::texts::packed : packed_values::texts::apart) {}

  std::size_t size() const { return size_; }

  // Moves the values from position start on off the row stack, as the next row.
  void take(execution_context& context, std::size_t start);

  // Copies the values from position start on, as the next row.
  void add_copy(const execution_context& context, std::size_t start);

  // Appends copies of a row's values to the row stack.
  void push_copy(std::size_t row_number, execution_context& context) const;

  // About how much memory the rows take.
  std::size_t byte_count() const;

  // Appends the values of a row to the row stack; it is not here any more until it comes back.
  void give(std::size_t row_number, execution_context& context);

  // The row given last lies on the row stack from position start on: moves it back from there, or copies it.
  void take_back(std::size_t row_number, execution_context& context, std::size_t start);
  void copy_back(std::size_t row_number, const execution_context& context, std::size_t start);

  // Prefetches a row that will be given; and, some time later, its texts.
  void prefetch(std::size_t row_number) const;
  void prefetch_further(std::size_t row_number) const;

 private:
  void note_width(std::size_t width);
  void keep(value& each);
  void make_values();
  std::size_t first_of(std::size_t row_number) const;

  std::size_t size_ = 0;
  std::size_t width_ = 0;            // of the first row
  std::vector<std::size_t> starts_;  // where each row begins and the last one ends; empty while all are as wide
  bool are_references_ = true;
  reference_list references_;
  packed_values values_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ROWS_KEPT_ROWS_HPP_
