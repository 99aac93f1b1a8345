// Makes the alternatives of a physical plan in one readable line each:
//    project({a["name"]}, filter(eq(a["state"], text(u"TX")), scan(a, "by_state")))
// query_plan.hpp says what the alternatives do. A plan owns its inputs, and can be moved but not copied.
#ifndef OVHOST_PLANS_PLANS_HPP_
#define OVHOST_PLANS_PLANS_HPP_

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "ov_sql_executor/planning/query_plan.hpp"
#include "ovhost/plans/query.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

using plan = physical_queryplan::QueryPlan::PredicateVariant;
using physical_queryplan::QueryPlan::aggregate;
using physical_queryplan::QueryPlan::assignment;
using physical_queryplan::QueryPlan::order_key;
using physical_queryplan::QueryPlan::scan_range;

// ---- Scans. A range bounds one key column. Objects without a value in it do not match; a NULL bound matches nothing.

namespace key {

OVHOST_API scan_range any();
OVHOST_API scan_range equal(expression bound);
OVHOST_API scan_range below(expression bound);
OVHOST_API scan_range at_most(expression bound);
OVHOST_API scan_range above(expression bound);
OVHOST_API scan_range at_least(expression bound);
OVHOST_API scan_range begins_with(expression bound);  // texts
OVHOST_API scan_range null();                         // the objects without a value
OVHOST_API scan_range both(scan_range left, const scan_range& right);

}  // namespace key

enum class walk { ascending, descending };

// Gives the objects of the variable's table through one of its indexes. Each range bounds one key column, in key order.
// Where a range that is no equality is followed by another, the scan takes in objects that do not match, and a filter
// has to stay above (see QueryPlan::Scan). Throws unknown_name, and std::invalid_argument for more ranges than key
// columns.
OVHOST_API plan scan(const table_variable& variable, std::string_view index, std::vector<scan_range> ranges = {},
                     walk direction = walk::ascending);

// ---- One input

OVHOST_API plan filter(expression predicate, plan child);
OVHOST_API plan project(std::vector<expression> columns, plan child);
OVHOST_API plan extend(std::vector<assignment> computations, plan child);
OVHOST_API plan group(std::vector<aggregate> aggregates, std::vector<assignment> group_by, plan child);
OVHOST_API plan order(std::vector<order_key> keys, plan child);
OVHOST_API plan limit(std::optional<expression> limit, std::optional<expression> offset, plan child);

OVHOST_API order_key ascending(expression of);
OVHOST_API order_key descending(expression of);

// Gives a variable made by follow() its value, as one more column of each row. reach and bind throw std::logic_error
// for a variable that follows nothing.
OVHOST_API plan reach(const table_variable& followed, plan child);

// ---- No input

// Gives one row of one value.
OVHOST_API plan generate(assignment computed);

// Gives one row of a variable made by follow(), as the right side of a join.
OVHOST_API plan bind(const table_variable& followed);

// ---- Two inputs

OVHOST_API plan join(plan left, plan right);       // the right input may use the left one's columns
OVHOST_API plan left_join(plan left, plan right);  // as for join
OVHOST_API plan full_join(std::optional<expression> condition, plan left, plan right);
OVHOST_API plan unite(plan left, plan right);

}  // namespace ovhost

#endif  // OVHOST_PLANS_PLANS_HPP_
