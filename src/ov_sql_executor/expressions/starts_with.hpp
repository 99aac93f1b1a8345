#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_STARTS_WITH_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_STARTS_WITH_HPP_

#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// Tells whether a text begins with another, by their encoded forms. Evaluates the prefix, on the right, first, and the
// text always. Gives NULL where either is NULL. Throws db_exception type_error where either is no text.
class starts_with final : public lending_operator {
 public:
  starts_with(std::unique_ptr<operator_base> text, std::unique_ptr<operator_base> prefix)
      : left_(std::move(text)), right_(std::move(prefix)) {}

  value_view lend(execution_context& context, value& scratch) const override;

 private:
  operand left_;
  operand right_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_STARTS_WITH_HPP_
