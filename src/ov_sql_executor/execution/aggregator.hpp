#ifndef OV_SQL_EXECUTOR_EXECUTION_AGGREGATOR_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_AGGREGATOR_HPP_

#include <memory>
#include <vector>

#include "ov_sql_executor/execution/grouping/aggregate.hpp"
#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// One row per group of the child's rows: the aggregates, then the group keys. Groups come in first-seen order. Without
// group keys there is exactly one row, also for an empty input. The input is read when the first row is asked for.
class aggregator final : public source_node {
 public:
  aggregator(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> group_keys,
             std::vector<aggregate_entry> aggregates);

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return aggregates_.size() + group_keys_.size(); }
  bool keeps_rows() const override { return child_.keeps_rows(); }
  node_description describe() const override;

 private:
  input child_;
  std::vector<operators::operand> group_keys_;
  std::vector<aggregate_entry> aggregates_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_AGGREGATOR_HPP_
