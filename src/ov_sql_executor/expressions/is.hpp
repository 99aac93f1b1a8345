#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_IS_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_IS_HPP_

#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// Tells whether the object on the left is of the type whose set specifier is on the right, or of one derived from it.
// Evaluates the right operand first. Where that is NULL, gives NULL and does not evaluate the left one. Gives NULL for
// a NULL object, too, and for one whose type the core does not know. Throws db_exception type_error for operands of
// other types, and with the core's status.
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
