#ifndef OV_SQL_EXECUTOR_PLANNING_COLUMN_DEFINITION_HPP_
#define OV_SQL_EXECUTOR_PLANNING_COLUMN_DEFINITION_HPP_

#include "ov_sql_executor/expressions/column_ref.hpp"
#include "ov_sql_executor/planning/query_plan.hpp"

namespace physical_to_exec {

// The expression that defines a computed column: that of an assignment, of a grouping, or the argument of an aggregate.
// Searches depth first, left before right, a node's own definitions before its inputs'; null when nothing defines it.
const physical_queryplan::expression* find_definition(const physical_queryplan::QueryPlan::PredicateVariant& plan,
                                                      const physical_queryplan::column_ref& column);

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_COLUMN_DEFINITION_HPP_
