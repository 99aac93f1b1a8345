#include "ov_sql_executor/execution/nested_loop_enumerator.hpp"

#include <algorithm>

#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

bool nested_loop_enumerator::push_next(execution_context& context) {
  const std::size_t size = context.row_stack.size();
  if (state_ == state::exhausted) return false;
  if (state_ != state::needs_outer_row) move_onto_stack(context, outer_row_);
  while (state_ != state::needs_outer_row || push_outer_row(context)) {
    if (push_inner_row(context, size)) return true;
    const bool unmatched = state_ == state::outer_row_unmatched;
    state_ = state::needs_outer_row;
    if (unmatched && null_width_) {
      inner_.close();
      push_nulls(context, *null_width_);
      return true;
    }
    cut_row_stack(context, size);
  }
  state_ = state::exhausted;
  return false;
}

void nested_loop_enumerator::restart(execution_context& context, opening how) {
  outer_.start(context, how.for_all_rows());
  inner_.close();
  changed_from_ = std::min(changed_from_, how.changed_from);
  state_ = state::needs_outer_row;
}

// Leaves the next outer row on the stack, with a new inner side for it.
bool nested_loop_enumerator::push_outer_row(execution_context& context) {
  const std::size_t outer_start = context.row_stack.size();
  if (!outer_.push_next(context)) return false;
  inner_.start(context, {all_rows, std::min(changed_from_, outer_start)});
  changed_from_ = outer_start;
  state_ = state::outer_row_unmatched;
  return true;
}

bool nested_loop_enumerator::push_inner_row(execution_context& context, std::size_t outer_start) {
  const std::size_t inner_start = context.row_stack.size();
  if (!inner_.push_next(context)) return false;
  if (inner_.is_at_end()) {
    state_ = state::needs_outer_row;
    return true;
  }
  copy_from_stack(context, outer_start, inner_start, outer_row_);
  state_ = state::outer_row_matched;
  return true;
}

}  // namespace ov::sql_executor
