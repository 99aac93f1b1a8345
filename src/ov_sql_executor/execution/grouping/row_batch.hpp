#ifndef OV_SQL_EXECUTOR_EXECUTION_GROUPING_ROW_BATCH_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_GROUPING_ROW_BATCH_HPP_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ov_sql_executor/execution/grouping/aggregate.hpp"
#include "ov_sql_executor/execution/grouping/distinct_rows.hpp"
#include "ov_sql_executor/execution/grouping/group_accumulators.hpp"
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Rows whose group keys and arguments have been evaluated, and which wait until several can be taken into their groups.
// Among many groups each row would wait for memory again and again: for its place in the hash table, the key there, the
// states of the group. Rows that wait together wait once. (Group prefetching: Chen, Ailamaki, Gibbons and Mowry,
// Improving Hash Join Performance through Prefetching, 2004.)
class row_batch {
 public:
  // All of them must outlive it.
  row_batch(const std::vector<operators::operand>& group_keys, const std::vector<aggregate_entry>& aggregates,
            distinct_rows& groups, group_accumulators& accumulators);

  // Evaluates what is wanted of the row on top of the row stack, in the order in which it would be without waiting. May
  // settle.
  void add(execution_context& context);

  // Takes the rows into their groups, one after the other; if an argument threw, the last row as far as it was
  // evaluated. Throws what the aggregates throw, and forgets the rows behind that.
  void settle();

 private:
  value_view* views_of(std::size_t row_number) { return views_.data() + row_number * operands_.size(); }

  distinct_rows& groups_;
  group_accumulators& accumulators_;
  std::size_t key_width_;
  std::vector<const operators::operand*> operands_;  // of a row: its keys, then each aggregate's arguments
  std::vector<std::size_t> ends_;                    // of each aggregate's arguments among them
  std::size_t most_rows_;
  std::vector<value_view> views_;                  // of all rows, one row's after the other's
  std::vector<operators::scratch_space> scratch_;  // for each view
  std::vector<std::uint32_t> hashes_;
  std::vector<std::size_t> indexes_;  // of the groups
  std::size_t count_ = 0;
  std::size_t evaluated_ = 0;  // how many operands of the last of these rows
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_ROW_BATCH_HPP_
