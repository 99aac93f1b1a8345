// Moving rows between the row stack and where they are kept.
#ifndef OV_SQL_EXECUTOR_EXECUTION_ROWS_ROW_STACK_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ROWS_ROW_STACK_HPP_

#include <cstddef>
#include <cstdint>
#include <utility>
#include <variant>
#include <vector>

#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Cuts the row stack back to a size that it had before.
inline void cut_row_stack(execution_context& context, std::size_t size) {
  while (context.row_stack.size() > size) context.row_stack.pop_back();
}

// Appends a value to the row stack.
template <class Alternative>
void push_value(execution_context& context, Alternative&& alternative) {
  append_in_place(context.row_stack, std::forward<Alternative>(alternative));
}

// Appends what a value of a row holds, which is faster than moving the value: it is made by its alternative at once.
[[gnu::always_inline]] inline void append_moved(std::vector<value>& list, value& source) {
  if (source.valueless_by_exception()) {
    list.push_back(std::move(source));
  } else {
    std::visit([&list](auto& held) { list.emplace_back(std::move(held)); }, source);
  }
}

// Appends the values of a row, which keeps its width but not its values.
void move_onto_stack(execution_context& context, row& source);

// Appends NULLs.
void push_nulls(execution_context& context, std::uint64_t count);

// Takes the values from position start on off the stack; the target's memory is used again.
void move_from_stack(execution_context& context, std::size_t start, row& target);

// Copies the values from start up to end.
void copy_from_stack(const execution_context& context, std::size_t start, std::size_t end, row& target);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ROWS_ROW_STACK_HPP_
