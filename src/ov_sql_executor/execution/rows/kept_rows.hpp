#ifndef OV_SQL_EXECUTOR_EXECUTION_ROWS_KEPT_ROWS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ROWS_KEPT_ROWS_HPP_

#include <cstddef>
#include <vector>

#include "ov_sql_executor/execution/rows/reference_list.hpp"
#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/packed_values.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// Rows that a sort or a join keeps, millions of them: one after another, without an allocation for each. Stores rows of
// references only, which scans and their joins yield, as a reference_list; other rows as packed_values.
class kept_rows {
 public:
  // How often each row is given. Decides how texts are stored: see packed_values::texts.
  enum class access { once, repeated };
  explicit kept_rows(access pattern)
      : values_(pattern == access::once ? packed_values::texts::packed : packed_values::texts::out_of_line) {}

  std::size_t size() const { return size_; }

  // Requires, of every row number below: row_number < size().

  // Moves the values from position start on off the row stack, as the next row. Requires: start <= its size.
  void take(execution_context& context, std::size_t start);

  // Copies the values from position start on, as the next row.
  void add_copy(const execution_context& context, std::size_t start);

  // Appends copies of a row's values to the row stack.
  void push_copy(std::size_t row_number, execution_context& context) const;

  // About how much memory the rows take.
  std::size_t byte_count() const;

  // Appends the values of a row to the row stack. Some are moved: the row must not be given again before take_back or
  // copy_back.
  void give(std::size_t row_number, execution_context& context);

  // Moves a row that was given back off the row stack, or copies it and leaves the stack.
  // Requires: it is all that lies on the row stack from position start on.
  void take_back(std::size_t row_number, execution_context& context, std::size_t start);
  void copy_back(std::size_t row_number, const execution_context& context, std::size_t start);

  // Prefetches a row that will be given, except its texts.
  void prefetch(std::size_t row_number) const;

  // Prefetches the texts of a row. Reads the row: prefetch that some time before.
  void prefetch_texts(std::size_t row_number) const;

 private:
  void note_width(std::size_t width);
  void append(value& each);
  void make_values();
  bool is_on_stack(std::size_t row_number, const execution_context& context, std::size_t start) const;
  std::size_t first_value_of(std::size_t row_number) const;

  std::size_t size_ = 0;
  std::size_t width_ = 0;            // of the first row
  std::vector<std::size_t> starts_;  // where each row begins and the last one ends; empty while all have that width
  bool are_references_ = true;
  reference_list references_;
  packed_values values_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ROWS_KEPT_ROWS_HPP_
