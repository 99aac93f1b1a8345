#ifndef OV_SQL_EXECUTOR_EXECUTION_GROUPING_GROUP_ACCUMULATORS_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_GROUPING_GROUP_ACCUMULATORS_HPP_

#include <cstddef>
#include <vector>

#include "ov_sql_executor/execution/grouping/aggregate.hpp"
#include "ov_sql_executor/support/large_memory.hpp"

namespace ov::sql_executor {

// The running states of each group's aggregates: side by side, each as large as it is, since groups by the million are
// looked at in any order and have to come from near the processor. They lie in blocks that never move, each for as many
// groups as all before it, and a few more.
class group_accumulators {
 public:
  // The list of aggregates must outlive it. No more groups may be added than are announced.
  group_accumulators(const std::vector<aggregate_entry>& aggregates, group_count groups);
  group_accumulators(const group_accumulators&) = delete;
  group_accumulators& operator=(const group_accumulators&) = delete;

  // The next group, which has seen no row.
  void add_group();

  // Takes the row on top of the row stack into a group, by number.
  void add_row(std::size_t group, execution_context& context);

  // The same for a row that is gone, by the values that the aggregates' arguments had, one after the other; only for so
  // many of the aggregates.
  void take_values(std::size_t group, const value_view* seen, std::size_t aggregate_count);

  // Prefetches the states of a group that is going to take a row; and, some time later, what else that row looks at.
  void prefetch_states(std::size_t group) const;
  void prefetch_further(std::size_t group, const value_view* seen, std::size_t aggregate_count);

  // Appends a group's results to the row stack.
  void push_results(std::size_t group, execution_context& context) const;

 private:
  struct place {
    std::size_t block;
    std::size_t group;  // within the block
  };
  struct further {  // an aggregate that looks further than its state
    std::size_t aggregate;
    std::size_t argument;  // its first, among those of all
    bool only_at_texts;
  };
  static place find(std::size_t group);
  const std::byte* first_state(std::size_t group) const;
  std::byte* first_state(std::size_t group);

  const std::vector<aggregate_entry>& aggregates_;
  std::vector<std::size_t> offsets_;  // of each aggregate's state within its group
  std::vector<std::size_t> widths_;   // how many arguments each aggregate has
  std::vector<further> further_;
  std::vector<std::byte> new_group_;  // the states of a group that has seen no row
  std::size_t count_ = 0;
  std::vector<large_vector<std::byte>> blocks_;
  std::vector<accumulator_memory> memory_;  // of each aggregate
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_GROUP_ACCUMULATORS_HPP_
