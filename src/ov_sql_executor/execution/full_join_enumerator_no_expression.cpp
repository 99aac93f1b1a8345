#include "ov_sql_executor/execution/full_join_enumerator_no_expression.hpp"

#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

bool full_join_enumerator_no_expression::push_next(execution_context& context) {
  if (!started_) start(context);
  if (!right_.is_open()) {
    if (!left_.push_next(context)) return false;
    push_nulls(context, right_width_);
    return true;
  }
  if (left_.is_open()) return push_pair(context);

  const auto size = static_cast<std::ptrdiff_t>(context.row_stack.size());
  if (!push_right_row(context)) return false;
  context.row_stack.insert(context.row_stack.begin() + size, left_width_, operator_library::NullValue());
  return true;
}

void full_join_enumerator_no_expression::restart(execution_context& context, opening how) {
  left_.start(context, how.for_all_rows());
  right_.start(context, how.for_all_rows());
  left_row_.reset();
  pending_right_row_.reset();
  started_ = false;
}

void full_join_enumerator_no_expression::start(execution_context& context) {
  started_ = true;
  pending_right_row_ = right_.next(context);
  if (!pending_right_row_) {
    right_.close();
    return;
  }
  left_row_ = left_.next(context);
  if (!left_row_) left_.close();
}

bool full_join_enumerator_no_expression::push_right_row(execution_context& context) {
  if (!pending_right_row_) return right_.push_next(context);
  move_onto_stack(context, *pending_right_row_);
  pending_right_row_.reset();
  return true;
}

// A right side that is empty when it is read again gives its left row no partner.
bool full_join_enumerator_no_expression::push_pair(execution_context& context) {
  const auto size = static_cast<std::ptrdiff_t>(context.row_stack.size());
  while (left_row_) {
    if (push_right_row(context)) {
      context.row_stack.insert(context.row_stack.begin() + size, left_row_->begin(), left_row_->end());
      return true;
    }
    left_row_ = left_.next(context);
    if (left_row_) right_.start(context, {all_rows, context.row_stack.size()});  // which the left row is not on
  }
  return false;
}

}  // namespace ov::sql_executor
