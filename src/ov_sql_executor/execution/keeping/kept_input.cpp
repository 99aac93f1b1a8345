#include "ov_sql_executor/execution/keeping/kept_input.hpp"

#include <utility>

namespace ov::sql_executor {

namespace {

constexpr std::size_t most_bytes = std::size_t{256} << 20;

}  // namespace

bool kept_input::start(execution_context& context, opening how) {
  const bool is_first = !std::exchange(has_started_, true);
  const bool is_same = !is_first && (!last_read_ || *last_read_ < how.changed_from);
  if (is_same && phase_ == phase::keeping) return true;
  kept_ = kept_rows(kept_rows::access::once);
  rows_.start(context, how.for_all_rows());
  if (!is_same) {
    phase_ = phase::new_rows;
  } else if (phase_ == phase::new_rows) {
    phase_ = phase::keeping;
  }
  return false;
}

bool kept_input::pull(execution_context& context) {
  if (!rows_.is_open()) return false;
  const std::size_t start = context.row_stack.size();
  if (!rows_.push_next(context)) {
    rows_.close();
    return false;
  }
  if (phase_ == phase::keeping) {
    kept_.add_copy(context, start);
    if (kept_.byte_count() > most_bytes) {
      phase_ = phase::given_up;
      kept_ = kept_rows(kept_rows::access::once);
    }
  }
  return true;
}

}  // namespace ov::sql_executor
