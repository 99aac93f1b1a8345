#ifndef OV_SQL_EXECUTOR_PLANNING_SCAN_CONDITIONS_HPP_
#define OV_SQL_EXECUTOR_PLANNING_SCAN_CONDITIONS_HPP_

#include <vector>

#include "ov_sql_executor/execution/key_ranges/key_condition.hpp"
#include "ov_sql_executor/expressions/scope.hpp"
#include "ov_sql_executor/planning/query_plan.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace physical_to_exec {

// Translates the key conditions of a scan: one list per leading key column. The bounds see only the enclosing rows.
std::vector<std::vector<ov::sql_executor::key_condition>> translate_ranges(
    const std::vector<physical_queryplan::QueryPlan::scan_range>& ranges,
    std::vector<ov::sql_executor::value>& constants, const ov::sql_executor::visible_columns& outer);

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_SCAN_CONDITIONS_HPP_
