// The alternatives of a physical plan in one readable line each:
//   project({a["name"]}, filter(eq(a["state"], text(u"TX")), scan(a, "by_state")))
#ifndef OVHOST_PLANS_PLANS_HPP_
#define OVHOST_PLANS_PLANS_HPP_

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "ov_sql_executor/planning/query_plan.hpp"
#include "ovhost/plans/query.hpp"

namespace ovhost {

using plan = physical_queryplan::QueryPlan::PredicateVariant;
using physical_queryplan::QueryPlan::aggregate;
using physical_queryplan::QueryPlan::assignment;
using physical_queryplan::QueryPlan::order_key;
using physical_queryplan::QueryPlan::scan_range;

// ---- Scans. A range bounds one key column; objects without a value in it do not match, nor does a NULL bound match
// anything.

namespace key {

scan_range any();
scan_range equal(expression bound);
scan_range below(expression bound);
scan_range at_most(expression bound);
scan_range above(expression bound);
scan_range at_least(expression bound);
scan_range begins_with(expression bound);  // texts
scan_range null();                         // the objects without a value
scan_range both(scan_range left, const scan_range& right);

}  // namespace key

enum class walk { ascending, descending };

// The objects of the variable's table through one of its indexes, each range bounding one key column, in key order.
// Where a range that is no equality is followed by another, the scan takes in objects that do not match, and a filter
// has to stay above (see QueryPlan::Scan). Throws unknown_name, and std::invalid_argument if there are more ranges than
// key columns.
plan scan(const table_variable& variable, std::string_view index, std::vector<scan_range> ranges = {},
          walk direction = walk::ascending);

// ---- One input

plan filter(expression predicate, plan child);
plan project(std::vector<expression> columns, plan child);
plan extend(std::vector<assignment> computations, plan child);
plan group(std::vector<aggregate> aggregates, std::vector<assignment> group_by, plan child);
plan order(std::vector<order_key> keys, plan child);
plan limit(std::optional<expression> limit, std::optional<expression> offset, plan child);

order_key ascending(expression of);
order_key descending(expression of);

// Gives a variable made by follow() its value, as one more column of each row.
plan reach(const table_variable& followed, plan child);

// ---- No input

plan generate(assignment computed);         // one row of one value
plan bind(const table_variable& followed);  // the same for a variable made by follow(): the right side of a join

// ---- Two inputs

plan join(plan left, plan right);       // the right input may use the left one's columns
plan left_join(plan left, plan right);  // so it may here
plan full_join(std::optional<expression> condition, plan left, plan right);
plan unite(plan left, plan right);

}  // namespace ovhost

#endif  // OVHOST_PLANS_PLANS_HPP_
