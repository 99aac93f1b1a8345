#ifndef OV_SQL_EXECUTOR_EXECUTION_FILTER_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_FILTER_HPP_

#include <memory>

#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// Passes through the child's rows for which the predicate is true; NULL counts as false.
class filter final : public source_node {
 public:
  filter(std::unique_ptr<node> child, std::unique_ptr<operators::operator_base> predicate)
      : child_(std::move(child)), predicate_(std::move(predicate)) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return child_.row_width(); }
  bool keeps_rows() const override { return child_.keeps_rows(); }
  node_description describe() const override { return {"filter", {}, {&child_}}; }

 private:
  input child_;
  operators::operand predicate_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_FILTER_HPP_
