#ifndef OV_SQL_EXECUTOR_PLANNING_RESULT_COLUMNS_HPP_
#define OV_SQL_EXECUTOR_PLANNING_RESULT_COLUMNS_HPP_

#include <vector>

#include "ov_sql_executor/planning/plan.hpp"
#include "ov_sql_executor/planning/query_plan.hpp"

namespace physical_to_exec {

// Returns the type of every result column of a plan. Requires: the root has been translated before. Throws OVException
// 7022 "Unsupported return type" for set specifiers, NULL columns and a computed reference that nothing defines;
// db_exception when a metadata read fails.
std::vector<column_type> result_columns(const physical_queryplan::QueryPlan::Projection& root);

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_RESULT_COLUMNS_HPP_
