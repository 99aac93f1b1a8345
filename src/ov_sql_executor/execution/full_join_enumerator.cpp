#include "ov_sql_executor/execution/full_join_enumerator.hpp"

#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

bool full_join_enumerator::push_next(execution_context& context) {
  if (right_.is_open()) read_right_side(context);
  const std::size_t size = context.row_stack.size();
  if (state_ == state::left_row_unmatched || state_ == state::left_row_matched) move_onto_stack(context, left_row_);
  while (state_ != state::left_exhausted) {
    if (state_ == state::needs_left_row && !push_left_row(context)) break;
    if (push_matching_right_row(context, size)) return true;
    const bool matched = state_ == state::left_row_matched;
    state_ = state::needs_left_row;
    if (!matched) {
      push_nulls(context, right_width_);
      return true;
    }
    cut_row_stack(context, size);
  }
  return push_unmatched_right_row(context);
}

void full_join_enumerator::restart(execution_context& context, opening how) {
  left_.start(context, how.for_all_rows());
  right_.start(context, how.for_all_rows());
  forget_right_side();
  state_ = state::needs_left_row;
}

// Out of line: what is made anew would make the frame of each level larger.
[[gnu::noinline]] void full_join_enumerator::forget_right_side() {
  right_rows_ = kept_rows(kept_rows::access::repeated);
  if (keyed_condition_) index_ = keyed_condition_->make_index();
  candidates_.reset();
}

void full_join_enumerator::read_right_side(execution_context& context) {
  const std::size_t size = context.row_stack.size();
  while (right_.push_next(context)) right_rows_.take(context, size);
  right_matched_.assign(right_rows_.size(), false);
  right_.close();
}

bool full_join_enumerator::push_left_row(execution_context& context) {
  cursor_ = 0;
  if (left_.push_next(context)) {
    state_ = state::left_row_unmatched;
    if (is_hashed()) {
      candidates_.start(*keyed_condition_, index_, context);
      cursor_ = right_rows_.size();
    }
    return true;
  }
  left_.close();
  state_ = state::left_exhausted;
  return false;
}

// The left row lies on the stack; when a right row matches, both stay there and are kept as well.
bool full_join_enumerator::push_matching_right_row(execution_context& context, std::size_t left_start) {
  const std::size_t right_start = context.row_stack.size();
  while (const std::optional<candidate> next = next_candidate()) {
    const std::size_t current = next->row_number;
    right_rows_.give(current, context);
    if (holds(*next, context)) {
      state_ = state::left_row_matched;
      right_matched_[current] = true;
      copy_from_stack(context, left_start, right_start, left_row_);
      right_rows_.copy_back(current, context, right_start);
      return true;
    }
    right_rows_.take_back(current, context, right_start);
  }
  return false;
}

// The first left row is tested with every right row.
std::optional<candidate> full_join_enumerator::next_candidate() {
  if (cursor_ == right_rows_.size()) return is_hashed() ? candidates_.next(index_) : std::nullopt;
  return candidate{static_cast<std::uint32_t>(cursor_++), false};
}

bool full_join_enumerator::holds(const candidate& right_row, execution_context& context) {
  if (condition_) return condition_->holds(context);
  if (right_row.has_equal_keys) return keyed_condition_->rest_holds(context);
  if (right_row.row_number == index_.size()) return keyed_condition_->holds(context, index_, keys_);
  return keyed_condition_->holds(context);
}

bool full_join_enumerator::push_unmatched_right_row(execution_context& context) {
  while (cursor_ < right_rows_.size()) {
    const std::size_t current = cursor_++;
    if (right_matched_[current]) continue;
    push_nulls(context, left_width_);
    right_rows_.give(current, context);
    return true;
  }
  return false;
}

}  // namespace ov::sql_executor
