#ifndef OV_SQL_EXECUTOR_PLANNING_STACK_NEED_HPP_
#define OV_SQL_EXECUTOR_PLANNING_STACK_NEED_HPP_

#include <cstddef>

#include "ov_sql_executor/planning/query_plan.hpp"

namespace physical_to_exec {

// Returns how many bytes of stack it takes to plan and to run a plan: those of its deepest path from the root through
// nodes and operations to a leaf. Connectives inside connectives of the same kind are one level. Measures any plan,
// whatever is wrong with it, in time linear in its size and on little stack.
std::size_t stack_need(const physical_queryplan::QueryPlan::PredicateVariant& plan);

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_STACK_NEED_HPP_
