#include "ov_sql_executor/execution/grouping/row_batch.hpp"

#include <algorithm>
#include <cassert>
#include <new>
#include <optional>
#include <utility>

namespace ov::sql_executor {

namespace {

constexpr std::size_t none = -1;

// More rows do not overlap more misses. More values do not stay in the cache until flush.
constexpr std::size_t max_rows = 16;
constexpr std::size_t max_values = 1024;

}  // namespace

row_batch::row_batch(const std::vector<operators::operand>& group_keys, const std::vector<aggregate_entry>& aggregates,
                     distinct_rows& groups, group_accumulators& accumulators)
    : groups_(groups), accumulators_(accumulators), key_width_(group_keys.size()) {
  for (const operators::operand& key : group_keys) operands_.push_back(&key);
  for (const aggregate_entry& aggregate : aggregates) {
    for (const operators::operand& argument : arguments_of(aggregate)) operands_.push_back(&argument);
    ends_.push_back(operands_.size());
  }
  assert(key_width_ > 0);
  capacity_ = std::clamp<std::size_t>(max_values / operands_.size(), 1, max_rows);
  views_.resize(capacity_ * operands_.size());
  scratch_.resize(capacity_ * operands_.size());
  hashes_.resize(capacity_);
  indexes_.resize(capacity_);
}

void row_batch::add(execution_context& context) {
  assert(count_ == 0 || evaluated_ == operands_.size());
  value_view* const views = views_of(count_);
  operators::scratch_space* const scratch = scratch_.data() + count_ * operands_.size();
  const auto evaluate = [&](std::size_t i) {
    // Constructs the view in place: copying one that was just made would stall on its stores.
    new (&views[i]) value_view(operands_[i]->preserve(context, scratch[i]));
  };
  for (std::size_t i = 0; i < key_width_; ++i) evaluate(i);
  hashes_[count_] = groups_.hash_of({views, key_width_});
  groups_.prefetch_slot(hashes_[count_]);
  ++count_;  // from here on flush adds the row, even if evaluating an argument throws
  for (evaluated_ = key_width_; evaluated_ < operands_.size(); ++evaluated_) evaluate(evaluated_);
  if (count_ == capacity_) flush();
}

// Each pass prefetches what the next one reads.
void row_batch::flush() {
  const std::size_t count = std::exchange(count_, 0);
  // Of how many aggregates the row's arguments were evaluated.
  const auto aggregates_of = [&](std::size_t row_number) -> std::size_t {
    if (row_number + 1 < count) return ends_.size();
    return std::ranges::upper_bound(ends_, evaluated_) - ends_.begin();
  };
  for (std::size_t i = 0; i < count; ++i) {
    indexes_[i] = groups_.prefetch_row(hashes_[i]).value_or(none);
    if (indexes_[i] != none) accumulators_.prefetch_states(indexes_[i]);
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (indexes_[i] != none) groups_.prefetch_texts(indexes_[i]);
  }
  for (std::size_t i = 0; i < count; ++i) {
    const distinct_rows::place group = groups_.find_or_insert({views_of(i), key_width_}, hashes_[i]);
    if (group.is_new) accumulators_.add_group();
    indexes_[i] = group.index;
    accumulators_.prefetch_referenced(group.index, views_of(i) + key_width_, aggregates_of(i));
  }
  for (std::size_t i = 0; i < count; ++i) {
    accumulators_.add_evaluated(indexes_[i], views_of(i) + key_width_, aggregates_of(i));
  }
}

}  // namespace ov::sql_executor
