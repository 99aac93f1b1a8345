#ifndef OV_SQL_EXECUTOR_PLANNING_NODE_TRANSLATION_HPP_
#define OV_SQL_EXECUTOR_PLANNING_NODE_TRANSLATION_HPP_

#include <limits>
#include <memory>
#include <vector>

#include "ov_sql_executor/execution/node.hpp"
#include "ov_sql_executor/expressions/scope.hpp"
#include "ov_sql_executor/planning/query_plan.hpp"
#include "ov_sql_executor/planning/split_condition.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace physical_to_exec {

// What one plan alternative becomes.
struct translation {
  ov::sql_executor::scope columns;  // one per value of the node's rows, in row order
  std::unique_ptr<ov::sql_executor::node> node;
  // So many of the first columns are known to be found at their own place after the outer rows. Chained extensions need
  // not look them up again and again.
  std::size_t columns_in_place = 0;
  read_list reads = {};   // the positions of the outer rows that are read
  bool is_cheap = false;  // making its rows again costs less than keeping them
};

// Turns a plan into a tree of nodes. outer describes the values that stand on the row stack when the node's enumerator
// runs: the rows of the enclosing nodes. Every expression of a node sees them, followed by the node's input row.
// Literals are appended to constants. changing_from: on an inner side of a join, the position of the outer row, which
// is another one each time the side is started. Throws as Plan does.
inline constexpr std::size_t nothing_changes = std::numeric_limits<std::size_t>::max();
translation translate(const physical_queryplan::QueryPlan::PredicateVariant& plan,
                      std::vector<ov::sql_executor::value>& constants, const ov::sql_executor::scope& outer,
                      std::size_t changing_from = nothing_changes);

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_NODE_TRANSLATION_HPP_
