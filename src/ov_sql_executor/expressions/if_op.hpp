#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_IF_OP_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_IF_OP_HPP_

#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// The conditional. Evaluates the condition, then the one branch that it selects; NULL selects the else branch. Converts
// the value of that branch to Result, one of the eleven alternatives; expressions/conversion.hpp says how. Throws
// db_exception type_error for a condition that is neither a bool nor NULL, before it evaluates a branch.
template <class Result>
class if_op final : public lending_operator {
 public:
  if_op(std::unique_ptr<operator_base> condition, std::unique_ptr<operator_base> then_value,
        std::unique_ptr<operator_base> else_value)
      : condition_(std::move(condition)), then_value_(std::move(then_value)), else_value_(std::move(else_value)) {}

  value_view lend(execution_context& context, value& scratch) const override;

 private:
  operand condition_;
  operand then_value_;
  operand else_value_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_IF_OP_HPP_
