#include "ov_sql_executor/execution/keeping/kept_input.hpp"

#include <bit>
#include <utility>

#include "ov_sql_executor/execution/keeping/keeping_policy.hpp"

namespace ov::sql_executor {

bool kept_input::start(execution_context& context, opening how) {
  const bool is_first = !std::exchange(has_started_, true);
  const bool is_same = !is_first && (!last_read_ || *last_read_ < how.changed_from);
  if (is_same && phase_ == phase::keeping) return true;
  kept_ = kept_rows(kept_rows::access::once);
  rows_.start(context, how.for_all_rows());
  phase_ = phase_after_start(is_same);
  return false;
}

kept_input::phase kept_input::phase_after_start(bool is_same) const {
  if (current_keeping_policy.keeps_from == keeping_policy::from::first_start && !is_same) return phase::keeping;
  if (!is_same) return phase::new_rows;
  return phase_ == phase::new_rows ? phase::keeping : phase_;
}

bool kept_input::pull(execution_context& context, const equality_index* index) {
  if (!rows_.is_open()) return false;
  const std::size_t start = context.row_stack.size();
  if (!rows_.push_next(context)) {
    rows_.close();
    return false;
  }
  if (phase_ != phase::keeping) return true;
  kept_.add_copy(context, start);
  if (!is_full(index)) return true;
  phase_ = phase::given_up;
  kept_ = kept_rows(kept_rows::access::once);
  return true;
}

// Looks now and then: at 1, 2, 4... rows, and every thousand or so.
bool kept_input::is_full(const equality_index* index) const {
  constexpr std::size_t rows_between = 1024;
  if (!std::has_single_bit(kept_.size()) && kept_.size() % rows_between != 0) return false;
  return kept_.byte_count() + (index != nullptr ? index->byte_count() : 0) > current_keeping_policy.most_bytes;
}

}  // namespace ov::sql_executor
