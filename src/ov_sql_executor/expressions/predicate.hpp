#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_PREDICATE_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_PREDICATE_HPP_

#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// Whether a condition holds for the rows in scope; NULL counts as false. Throws db_exception type_error when the value
// is neither a bool nor NULL.
bool holds(const operand& condition, execution_context& context);

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_PREDICATE_HPP_
