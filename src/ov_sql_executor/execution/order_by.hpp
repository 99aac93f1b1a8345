#ifndef OV_SQL_EXECUTOR_EXECUTION_ORDER_BY_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ORDER_BY_HPP_

#include <memory>
#include <vector>

#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// The child's rows, sorted by the keys, the first one most significant; true in directions is ascending. NULL is
// lowest. Everything is read when the enumerator is created, which throws what comparing and evaluating keys throw.
// Rows with equal keys come in the order in which the child yields them. With a limit above, rows are dropped early;
// errors are the same: reading and evaluating come first, to the end of the input, then the error of sorting.
class order_by final : public source_node {
 public:
  order_by(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> keys,
           std::vector<bool> directions);

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return child_.row_width(); }
  bool keeps_rows() const override { return child_.keeps_rows(); }
  node_description describe() const override;

 private:
  input child_;
  std::vector<operators::operand> keys_;
  std::vector<bool> directions_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ORDER_BY_HPP_
