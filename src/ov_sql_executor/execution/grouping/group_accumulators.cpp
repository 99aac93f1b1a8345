#include "ov_sql_executor/execution/grouping/group_accumulators.hpp"

#include <algorithm>
#include <bit>
#include <cassert>
#include <utility>

namespace ov::sql_executor {

namespace {

constexpr unsigned first_block_bits = 4;
constexpr std::size_t first_block = std::size_t{1} << first_block_bits;

}  // namespace

group_accumulators::group_accumulators(const std::vector<aggregate_entry>& aggregates, group_count groups)
    : aggregates_(aggregates), memory_(aggregates.size()) {
  for (accumulator_memory& each : memory_) each.groups = groups;
  offsets_.reserve(aggregates_.size());
  widths_.reserve(aggregates_.size());
  std::size_t argument_count = 0;
  for (const aggregate_entry& aggregate : aggregates_) {
    offsets_.push_back(new_group_.size());
    const extra_reads reads = extra_reads_of(aggregate);
    if (reads != extra_reads::never) {
      extra_readers_.push_back({widths_.size(), argument_count, reads == extra_reads::for_texts});
    }
    widths_.push_back(arguments_of(aggregate).size());
    argument_count += widths_.back();
    new_group_.resize(new_group_.size() + accumulator_size(aggregate));
  }
  for (std::size_t i = 0; i < offsets_.size(); ++i)
    construct_accumulator(aggregates_[i], new_group_.data() + offsets_[i]);
}

void group_accumulators::add_group() {
  assert(count_ == 0 || memory_.empty() || memory_.front().groups == group_count::any);
  const std::size_t block = find(count_).block;
  if (block == blocks_.size()) blocks_.emplace_back((first_block << block) * new_group_.size());
  std::copy(new_group_.begin(), new_group_.end(), first_state(count_++));
}

void group_accumulators::add_row(std::size_t group, execution_context& context) {
  std::byte* const first = first_state(group);
  for (std::size_t i = 0; i < offsets_.size(); ++i) {
    sql_executor::add_row(aggregates_[i], first + offsets_[i], context, memory_[i], group);
  }
}

void group_accumulators::add_evaluated(std::size_t group, const value_view* seen, std::size_t aggregate_count) {
  assert(aggregate_count <= aggregates_.size());
  std::byte* const first = first_state(group);
  for (std::size_t i = 0; i < aggregate_count; seen += widths_[i++]) {
    sql_executor::add_evaluated(aggregates_[i], first + offsets_[i], {seen, widths_[i]}, memory_[i], group);
  }
}

void group_accumulators::prefetch_states(std::size_t group) const {
  if (new_group_.empty()) return;
  const std::byte* const first = first_state(group);
  prefetch_memory(first);
  prefetch_memory(first + new_group_.size() - 1);
}

void group_accumulators::prefetch_referenced(std::size_t group, const value_view* seen, std::size_t aggregate_count) {
  for (const auto& [i, argument, only_for_texts] : extra_readers_) {
    if (i >= aggregate_count) break;
    if (only_for_texts && !borrows(seen[argument])) continue;
    sql_executor::prefetch_referenced(aggregates_[i], first_state(group) + offsets_[i], {seen + argument, widths_[i]},
                                      memory_[i], group);
  }
}

void group_accumulators::push_results(std::size_t group, execution_context& context) const {
  const std::byte* const first = first_state(group);
  for (std::size_t i = 0; i < offsets_.size(); ++i) {
    append_value(context.row_stack, finish(aggregates_[i], first + offsets_[i]));
  }
}

const std::byte* group_accumulators::first_state(std::size_t group) const {
  assert(group < count_);
  const place at = find(group);
  return blocks_[at.block].data() + at.group * new_group_.size();
}

std::byte* group_accumulators::first_state(std::size_t group) {
  return const_cast<std::byte*>(std::as_const(*this).first_state(group));
}

// Block n begins after 16 * (2^n - 1) groups.
group_accumulators::place group_accumulators::find(std::size_t group) {
  const std::size_t shifted = group + first_block;
  const auto block = static_cast<std::size_t>(std::bit_width(shifted)) - 1 - first_block_bits;
  return {block, shifted - (first_block << block)};
}

}  // namespace ov::sql_executor
