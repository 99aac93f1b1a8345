#include "ov_sql_executor/execution/keeping/lookup_filter.hpp"

#include <utility>

#include "ov_sql_executor/execution/keeping/kept_input.hpp"
#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

namespace {

class lookup_filter_enumerator final : public row_source {
 public:
  lookup_filter_enumerator(const keyed_condition& condition, const input& child, std::optional<std::size_t> last_read,
                           execution_context& context)
      : condition_(condition),
        rows_(child, last_read),
        index_(condition.make_index()),
        keys_(condition.key_count()),
        candidates_(condition.key_count()) {
    rows_.start(context, {});
  }

  // First the rows that are kept, then those that were never asked for.
  bool push_next(execution_context& context) override {
    if (step_ == step::unstarted) {
      candidates_.start(condition_, index_, context);
      step_ = step::kept_rows;
    }
    if (step_ == step::kept_rows) {
      if (push_kept(context)) return true;
      step_ = step::new_rows;
    }
    return push_new(context);
  }

  void restart(execution_context& context, opening how) override {
    if (!rows_.start(context, how)) index_ = condition_.make_index();
    step_ = step::unstarted;
  }

 private:
  enum class step { unstarted, kept_rows, new_rows };

  bool push_kept(execution_context& context) {
    const std::size_t size = context.row_stack.size();
    while (const std::optional<candidate> next = candidates_.next(index_)) {
      rows_.push(next->row_number, context);
      if (next->has_equal_keys ? condition_.rest_holds(context) : condition_.holds(context)) return true;
      cut_row_stack(context, size);
    }
    return false;
  }

  bool push_new(execution_context& context) {
    const std::size_t size = context.row_stack.size();
    while (rows_.pull(context, &index_)) {
      if (new_row_passes(context)) return true;
      cut_row_stack(context, size);
    }
    return false;
  }

  bool new_row_passes(execution_context& context) {
    if (rows_.is_keeping()) return condition_.holds(context, index_, keys_);
    if (index_.size() != 0) index_ = condition_.make_index();
    return condition_.holds(context);
  }

  const keyed_condition& condition_;  // the node's
  kept_input rows_;
  equality_index index_;  // of the rows that are kept
  pinned_values keys_;    // of the row in hand
  candidate_rows candidates_;
  step step_ = step::unstarted;
};

}  // namespace

std::unique_ptr<row_source> lookup_filter::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  return std::make_unique<lookup_filter_enumerator>(condition_, child_, last_read_, context);
}

}  // namespace ov::sql_executor
