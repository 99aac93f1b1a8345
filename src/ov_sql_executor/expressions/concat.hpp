#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_CONCAT_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_CONCAT_HPP_

#include <memory>
#include <vector>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand_list.hpp"

namespace ov::sql_executor::operators {

// Joins texts in order; gives the empty text without any. Evaluates them in order, up to the first NULL, which makes
// the result NULL. Throws db_exception type_error for an operand that is no text.
class concat final : public making_operator {
 public:
  explicit concat(std::vector<std::unique_ptr<operator_base>> texts) : operands_(to_operands(std::move(texts))) {}

  value evaluate(execution_context& context) const override;

 private:
  std::vector<operand> operands_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_CONCAT_HPP_
