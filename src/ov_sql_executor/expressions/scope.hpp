#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_SCOPE_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_SCOPE_HPP_

#include <cstdint>
#include <optional>
#include <vector>

#include "ov_sql_executor/expressions/column_ref.hpp"
#include "ov_sql_executor/expressions/expression.hpp"

namespace ov::sql_executor {

// The columns of the values that stand on the row stack when an expression is evaluated, in order; none is valueless.
using scope = std::vector<physical_queryplan::column_ref>;

// The row-stack position of the first column in scope that equals this one. Throws boost::numeric::positive_overflow
// for a position beyond 32767.
std::optional<std::int16_t> find_in_scope(const scope& columns, const physical_queryplan::column_ref& column);

// The columns of outer, then those of inner.
scope join_scopes(const scope& outer, const scope& inner);

// The column that a column reference expression names. Throws OVException 7007 "Internal error: expression is not a
// variable" for any other expression and std::bad_variant_access for a valueless one.
physical_queryplan::column_ref to_column_ref(const physical_queryplan::expression& expression);

// The expression that reads a column.
physical_queryplan::expression to_expression(const physical_queryplan::column_ref& column);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_SCOPE_HPP_
