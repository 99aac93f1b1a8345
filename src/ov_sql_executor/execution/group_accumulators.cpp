#include "ov_sql_executor/execution/group_accumulators.hpp"

#include <bit>

namespace ov::sql_executor {

namespace {

constexpr unsigned first_block_bits = 4;
constexpr std::size_t first_block = std::size_t{1} << first_block_bits;

}  // namespace

void group_accumulators::add_group() {
  const place next = find(count_++);
  if (next.block == blocks_.size()) blocks_.emplace_back().reserve((first_block << next.block) * aggregates_.size());
  for (const aggregate_entry& aggregate : aggregates_) blocks_.back().push_back(new_accumulator(aggregate));
}

accumulator* group_accumulators::of(std::size_t group) {
  const place at = find(group);
  return blocks_[at.block].data() + at.group * aggregates_.size();
}

// Block n holds 16 * 2^n groups and begins after 16 * (2^n - 1) others.
group_accumulators::place group_accumulators::find(std::size_t group) {
  const std::size_t shifted = group + first_block;
  const auto block = static_cast<std::size_t>(std::bit_width(shifted)) - 1 - first_block_bits;
  return {block, shifted - (first_block << block)};
}

}  // namespace ov::sql_executor
