#ifndef OV_SQL_EXECUTOR_EXECUTION_GROUPING_GROUP_ACCUMULATORS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_GROUPING_GROUP_ACCUMULATORS_HPP_

#include <cstddef>
#include <vector>

#include "ov_sql_executor/execution/grouping/aggregate.hpp"
#include "ov_sql_executor/support/large_memory.hpp"

namespace ov::sql_executor {

// The running states of all groups' aggregates.
//
//    a group     | state of aggregate 0 | state of aggregate 1 | ...
//    block n     | group | group | ...    16 * 2^n groups
//
// The states of a group lie side by side, without padding, and so in few cache lines: millions of groups are read in
// random order. Blocks never move, so that growing copies nothing.
//
// Requires, of every group number below: it is less than the number of groups added.
class group_accumulators {
 public:
  // Requires: the aggregates outlive it; at most one group is added if groups is group_count::one.
  group_accumulators(const std::vector<aggregate_entry>& aggregates, group_count groups);
  group_accumulators(const group_accumulators&) = delete;
  group_accumulators& operator=(const group_accumulators&) = delete;

  // Adds a group without rows. Groups are numbered 0, 1, 2...
  void add_group();

  // Adds the row on top of the row stack to a group.
  void add_row(std::size_t group, execution_context& context);

  // Adds a row that need not be there any more to the first aggregate_count aggregates of a group. seen: the values
  // that these aggregates' arguments had in the row, one after another.
  void add_evaluated(std::size_t group, const value_view* seen, std::size_t aggregate_count);

  // Prefetches the states of a group.
  void prefetch_states(std::size_t group) const;

  // Prefetches what add_evaluated will read outside the states. Reads the states: prefetch them some time before.
  void prefetch_referenced(std::size_t group, const value_view* seen, std::size_t aggregate_count);

  // Appends a group's results to the row stack.
  void push_results(std::size_t group, execution_context& context) const;

 private:
  struct place {
    std::size_t block;
    std::size_t group;  // within the block
  };
  struct extra_reader {  // an aggregate that reads memory outside its state
    std::size_t aggregate;
    std::size_t argument;  // its first argument, counting those of all aggregates
    bool only_for_texts;
  };
  static place find(std::size_t group);
  const std::byte* first_state(std::size_t group) const;
  std::byte* first_state(std::size_t group);

  const std::vector<aggregate_entry>& aggregates_;
  std::vector<std::size_t> offsets_;  // of each aggregate's state within its group
  std::vector<std::size_t> widths_;   // how many arguments each aggregate has
  std::vector<extra_reader> extra_readers_;
  std::vector<std::byte> new_group_;  // the states of a group without rows
  std::size_t count_ = 0;
  std::vector<large_vector<std::byte>> blocks_;
  std::vector<accumulator_memory> memory_;  // of each aggregate
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_GROUP_ACCUMULATORS_HPP_
