#include "ov_sql_executor/execution/kept_rows.hpp"

#include <utility>

#include "ov_sql_executor/execution/stack_row.hpp"

namespace ov::sql_executor {

kept_rows::place kept_rows::take(execution_context& context, std::size_t start) {
  const place taken{values_.size(), context.row_stack.size() - start};
  for (std::size_t i = start; i < context.row_stack.size(); ++i) values_.push_back(std::move(context.row_stack[i]));
  cut_row_stack(context, start);
  return taken;
}

void kept_rows::give(const place& from, execution_context& context) {
  for (std::size_t i = 0; i < from.width; ++i) context.row_stack.push_back(std::move(values_[from.first + i]));
}

// Sorted rows lie far apart, and memory is slower than all the rest.
void kept_rows::expect(const place& from) const {
  if (from.width != 0) __builtin_prefetch(&values_[from.first]);
}

}  // namespace ov::sql_executor
