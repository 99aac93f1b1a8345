#ifndef OV_SQL_EXECUTOR_PLANNING_COLUMN_DEFINITION_HPP_
#define OV_SQL_EXECUTOR_PLANNING_COLUMN_DEFINITION_HPP_

#include <map>

#include "ov_sql_executor/expressions/column_ref.hpp"
#include "ov_sql_executor/planning/query_plan.hpp"

namespace physical_to_exec {

// Maps the computed references of a plan, by name, to the expressions that define them. Takes the definition of an
// extension or, without one, that of another assignment, of a grouping, or the argument of an aggregate. Of several,
// takes the first, searched depth first, left before right, a node's own definitions before its inputs'.
using reference_definitions = std::map<physical_queryplan::identifier, const physical_queryplan::expression*>;

reference_definitions find_reference_definitions(const physical_queryplan::QueryPlan::PredicateVariant& plan);

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_COLUMN_DEFINITION_HPP_
