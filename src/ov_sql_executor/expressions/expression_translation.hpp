#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_EXPRESSION_TRANSLATION_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_EXPRESSION_TRANSLATION_HPP_

#include <memory>
#include <vector>

#include "ov_sql_executor/expressions/expression.hpp"
#include "ov_sql_executor/expressions/operator_base.hpp"
#include "ov_sql_executor/expressions/scope.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// Turns a plan's expression into an operator tree. Evaluates nothing. A column becomes a read of its place in scope. A
// property that is not in scope is read from its variable, as the metadata say. Every occurrence of a literal is
// appended to constants.
//
// Throws std::out_of_range "invalid vector<T> subscript" for an operation with too few operands, OVException 7007 for a
// column that is not in scope, boost::numeric::positive_overflow for a position beyond 32767, std::bad_variant_access
// for a valueless expression, and what metadata reads throw.
std::unique_ptr<operators::operator_base> translate_expression(const physical_queryplan::expression& expression,
                                                               std::vector<value>& constants,
                                                               const visible_columns& columns);

// Translates each expression of a list, in order.
std::vector<std::unique_ptr<operators::operator_base>> translate_expressions(
    const std::vector<physical_queryplan::expression>& expressions, std::vector<value>& constants,
    const visible_columns& columns);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_EXPRESSION_TRANSLATION_HPP_
