#ifndef OV_SQL_EXECUTOR_EXECUTION_GENERATIVE_ASSIGNMENT_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_GENERATIVE_ASSIGNMENT_HPP_

#include <memory>

#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// One row of one value: the expression, evaluated against the rows in scope when the row is asked for.
class generative_assignment final : public source_node {
 public:
  explicit generative_assignment(std::unique_ptr<operators::operator_base> expression)
      : expression_(std::move(expression)) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return 1; }
  bool keeps_rows() const override { return false; }
  node_description describe() const override { return {"generative_assignment", {}, {}}; }

 private:
  operators::operand expression_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_GENERATIVE_ASSIGNMENT_HPP_
