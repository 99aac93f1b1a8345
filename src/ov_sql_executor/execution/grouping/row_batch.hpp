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

// Rows whose group keys and arguments have been evaluated, and which are added to their groups a batch at a time.
//
// Where groups do not fit into the cache, each row misses it several times: for the slot in the hash table, the key,
// the group's states. In a batch these misses overlap. (Group prefetching: Chen, Ailamaki, Gibbons and Mowry, Improving
// Hash Join Performance through Prefetching, 2004.)
class row_batch {
 public:
  // Requires: the arguments outlive it; there is a group key.
  row_batch(const std::vector<operators::operand>& group_keys, const std::vector<aggregate_entry>& aggregates,
            distinct_rows& groups, group_accumulators& accumulators);

  // Evaluates the group keys and arguments for the row on top of the row stack, in this order, and adds the row.
  // Flushes a full batch. Throws: what evaluation or flush() throws. After that only flush() may be called.
  void add(execution_context& context);

  // Adds the rows to their groups, in order, and empties the batch. If evaluating the last row threw, adds it to the
  // aggregates whose arguments were evaluated. Throws: what the aggregates throw; the rows after that one are lost.
  void flush();

 private:
  value_view* views_of(std::size_t row_number) { return views_.data() + row_number * operands_.size(); }

  distinct_rows& groups_;
  group_accumulators& accumulators_;
  std::size_t key_width_;
  std::vector<const operators::operand*> operands_;  // the group keys, then each aggregate's arguments
  std::vector<std::size_t> ends_;                    // for each aggregate, the end of its arguments in operands_
  std::size_t capacity_;                             // in rows
  std::vector<value_view> views_;                    // of each row's operands
  std::vector<operators::scratch_space> scratch_;    // of each view
  std::vector<std::uint32_t> hashes_;                // of each row's group key
  std::vector<std::size_t> indexes_;                 // of each row's group
  std::size_t count_ = 0;                            // of rows in the batch
  std::size_t evaluated_ = 0;                        // how many operands of the last row
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GROUPING_ROW_BATCH_HPP_
