#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_IS_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_IS_HPP_

#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// Whether the object on the left is of the type whose set specifier stands on the right, or of one derived from it. The
// right operand is evaluated first; when it is NULL, so is the result, without evaluating the left one. NULL also for a
// NULL object and for one whose type the core does not know. Throws db_exception type_error for operands of other
// types, and with the core's status.
class is final : public lending_operator {
 public:
  is(std::unique_ptr<operator_base> object, std::unique_ptr<operator_base> type)
      : left_(std::move(object)), right_(std::move(type)) {}

  value_view lend(execution_context& context, value& scratch) const override;

 private:
  operand left_;
  operand right_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_IS_HPP_
