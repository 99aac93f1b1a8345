#ifndef OV_SQL_EXECUTOR_PLANNING_NODE_TRANSLATION_HPP_
#define OV_SQL_EXECUTOR_PLANNING_NODE_TRANSLATION_HPP_

#include <cstddef>
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

// What the parts of a plan add to while they are translated.
struct translation_lists {
  std::vector<ov::sql_executor::value>& constants;  // literals
  variable_list computed = {};                      // variables that something else than a scan gives a value
};

// Positions of the row stack, in order.
using position_list = std::vector<std::size_t>;

// Turns a plan into a tree of nodes. outer describes the values that stand on the row stack when the node's enumerator
// runs: the rows of the enclosing nodes. Every expression of a node sees them, followed by the node's input row.
// changing_from: where the outer row of each join begins that has the plan on its inner side, which is started again
// with other values from there on. Throws as Plan does.
translation translate(const physical_queryplan::QueryPlan::PredicateVariant& plan, translation_lists& lists,
                      const ov::sql_executor::scope& outer = {}, const position_list& changing_from = {});

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_NODE_TRANSLATION_HPP_
