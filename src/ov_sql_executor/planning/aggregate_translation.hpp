#ifndef OV_SQL_EXECUTOR_PLANNING_AGGREGATE_TRANSLATION_HPP_
#define OV_SQL_EXECUTOR_PLANNING_AGGREGATE_TRANSLATION_HPP_

#include <vector>

#include "ov_sql_executor/execution/grouping/aggregate.hpp"
#include "ov_sql_executor/expressions/scope.hpp"
#include "ov_sql_executor/planning/query_plan.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace physical_to_exec {

// These throw std::bad_variant_access for a valueless variant.

// Throws std::out_of_range "invalid vector<T> subscript" where a kind lacks its argument.
ov::sql_executor::aggregate_entry translate_aggregate(const physical_queryplan::QueryPlan::aggregate& aggregate,
                                                      std::vector<ov::sql_executor::value>& constants,
                                                      const ov::sql_executor::visible_columns& inner);

// Returns what every kind of aggregate holds.
const physical_queryplan::QueryPlan::aggregation& common_fields(
    const physical_queryplan::QueryPlan::aggregate& aggregate);

// Returns the column of the aggregate's result.
physical_queryplan::column_ref result_column(const physical_queryplan::QueryPlan::aggregate& aggregate);

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_AGGREGATE_TRANSLATION_HPP_
