// Moving rows between the row stack and where they are kept.
#ifndef OV_SQL_EXECUTOR_EXECUTION_ROWS_ROW_STACK_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ROWS_ROW_STACK_HPP_

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <variant>
#include <vector>

#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Cuts the row stack back to a size. Requires: it is at least that large.
inline void cut_row_stack(execution_context& context, std::size_t size) {
  assert(size <= context.row_stack.size());
  while (context.row_stack.size() > size) context.row_stack.pop_back();
}

// Appends a value to the row stack.
template <class Alternative>
void push_value(execution_context& context, Alternative&& alternative) {
  append_in_place(context.row_stack, std::forward<Alternative>(alternative));
}

// Moves a value to the end of a list. Constructs it from the alternative, which is faster than moving the variant.
[[gnu::always_inline]] inline void append_moved(std::vector<value>& list, value& source) {
  if (source.valueless_by_exception()) {
    list.push_back(std::move(source));
  } else {
    std::visit([&list](auto& held) { list.emplace_back(std::move(held)); }, source);
  }
}

// Moves the values of a row onto the row stack. The row keeps its width.
void move_onto_stack(execution_context& context, row& source);

// Appends so many NULLs to the row stack.
void push_nulls(execution_context& context, std::uint64_t count);

// Moves the values from position start on off the row stack. Reuses the target's memory.
// Requires: start <= the row stack's size.
void move_from_stack(execution_context& context, std::size_t start, row& target);

// Copies the values in [start, end) of the row stack. Reuses the target's memory.
// Requires: start <= end <= the row stack's size.
void copy_from_stack(const execution_context& context, std::size_t start, std::size_t end, row& target);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ROWS_ROW_STACK_HPP_
