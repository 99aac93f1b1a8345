#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_LIST_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_LIST_HPP_

#include <iterator>
#include <memory>
#include <vector>

#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

inline std::vector<operand> to_operands(std::vector<std::unique_ptr<operator_base>> expressions) {
  return {std::make_move_iterator(expressions.begin()), std::make_move_iterator(expressions.end())};
}

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_LIST_HPP_
