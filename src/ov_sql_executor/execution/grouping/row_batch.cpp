#include "ov_sql_executor/execution/grouping/row_batch.hpp"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

namespace ov::sql_executor {

namespace {

constexpr std::size_t none = -1;

// More rows than that do not come faster, and more values do not stay near the processor until they are taken.
constexpr std::size_t most_rows = 16;
constexpr std::size_t most_values = 1024;

}  // namespace

row_batch::row_batch(const std::vector<operators::operand>& group_keys, const std::vector<aggregate_entry>& aggregates,
                     distinct_rows& groups, group_accumulators& accumulators)
    : groups_(groups), accumulators_(accumulators), key_width_(group_keys.size()) {
  for (const operators::operand& key : group_keys) operands_.push_back(&key);
  for (const aggregate_entry& aggregate : aggregates) {
    for (const operators::operand& argument : arguments_of(aggregate)) operands_.push_back(&argument);
    ends_.push_back(operands_.size());
  }
  most_rows_ = std::clamp<std::size_t>(most_values / operands_.size(), 1, most_rows);
  views_.resize(most_rows_ * operands_.size());
  scratch_.resize(most_rows_ * operands_.size());
  hashes_.resize(most_rows_);
  indexes_.resize(most_rows_);
}

void row_batch::add(execution_context& context) {
  value_view* const views = views_of(count_);
  operators::scratch_space* const scratch = scratch_.data() + count_ * operands_.size();
  const auto evaluate = [&](std::size_t i) {
    // Made in its place: copying a view that was just made would wait until all parts of it are written.
    new (&views[i]) value_view(operands_[i]->preserve(context, scratch[i]));
  };
  for (std::size_t i = 0; i < key_width_; ++i) evaluate(i);
  hashes_[count_] = groups_.hash_of({views, key_width_});
  groups_.prefetch_place(hashes_[count_]);
  ++count_;  // what is evaluated from here on counts even if something behind it throws
  for (evaluated_ = key_width_; evaluated_ < operands_.size(); ++evaluated_) evaluate(evaluated_);
  if (count_ == most_rows_) settle();
}

// Each pass asks for what the next one looks at.
void row_batch::settle() {
  const std::size_t count = std::exchange(count_, 0);
  // For how many of the aggregates a row has been evaluated.
  const auto aggregates_of = [&](std::size_t row_number) -> std::size_t {
    if (row_number + 1 < count) return ends_.size();
    return std::ranges::upper_bound(ends_, evaluated_) - ends_.begin();
  };
  for (std::size_t i = 0; i < count; ++i) {
    indexes_[i] = groups_.prefetch_row(hashes_[i]).value_or(none);
    if (indexes_[i] != none) accumulators_.prefetch_states(indexes_[i]);
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (indexes_[i] != none) groups_.prefetch_further(indexes_[i]);
  }
  for (std::size_t i = 0; i < count; ++i) {
    const distinct_rows::place group = groups_.find_or_insert({views_of(i), key_width_}, hashes_[i]);
    if (group.is_new) accumulators_.add_group();
    indexes_[i] = group.index;
    accumulators_.prefetch_further(group.index, views_of(i) + key_width_, aggregates_of(i));
  }
  for (std::size_t i = 0; i < count; ++i) {
    accumulators_.take_values(indexes_[i], views_of(i) + key_width_, aggregates_of(i));
  }
}

}  // namespace ov::sql_executor
