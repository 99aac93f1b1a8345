#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_ARITHMETIC_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_ARITHMETIC_HPP_

#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/values/arithmetic.hpp"

namespace ov::sql_executor::operators {

using pair_operation = value_view (*)(const value_view& left, const value_view& right);

// The four arithmetic operations. Evaluate the left operand first, and the right one always. values/arithmetic.hpp says
// what they accept and when they throw.
template <pair_operation Operation>
class binary_arithmetic final : public lending_operator {
 public:
  binary_arithmetic(std::unique_ptr<operator_base> left, std::unique_ptr<operator_base> right)
      : left_(std::move(left)), right_(std::move(right)) {}

  value_view lend(execution_context& context, value& scratch) const override;

 private:
  operand left_;
  operand right_;
};

using addition = binary_arithmetic<add_values>;
using subtraction = binary_arithmetic<subtract_values>;
using multiplication = binary_arithmetic<multiply_values>;
using division = binary_arithmetic<divide_values>;

class unary_negate final : public lending_operator {
 public:
  explicit unary_negate(std::unique_ptr<operator_base> number) : operand_(std::move(number)) {}

  value_view lend(execution_context& context, value& scratch) const override {
    return negate_value(operand_.lend(context, scratch));
  }

 private:
  operand operand_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_ARITHMETIC_HPP_
