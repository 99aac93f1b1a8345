#include "ovhost/plans/plans.hpp"

#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

namespace ovhost {
namespace {

using namespace physical_queryplan;
using QueryPlan::bound;
using QueryPlan::child_ptr;

child_ptr own(plan child) { return std::make_unique<plan>(std::move(child)); }

scan_range range_of(std::set<bound> scan_range::*comparison, expression value, bool rejects_null = true) {
  scan_range range;
  (range.*comparison).insert({std::move(value), rejects_null});
  return range;
}

assignment definition_of(const table_variable& followed) { return {followed.reference(), followed.variable()}; }

}  // namespace

namespace key {

scan_range any() { return {}; }
scan_range equal(expression bound) { return range_of(&scan_range::equal_to, std::move(bound)); }
scan_range below(expression bound) { return range_of(&scan_range::less_than, std::move(bound)); }
scan_range at_most(expression bound) { return range_of(&scan_range::at_most, std::move(bound)); }
scan_range above(expression bound) { return range_of(&scan_range::greater_than, std::move(bound)); }
scan_range at_least(expression bound) { return range_of(&scan_range::at_least, std::move(bound)); }
scan_range begins_with(expression bound) { return range_of(&scan_range::starts_with, std::move(bound)); }
scan_range null() { return range_of(&scan_range::equal_to, ovhost::null(), false); }

scan_range both(scan_range left, const scan_range& right) {
  for (const auto member : {&scan_range::equal_to, &scan_range::less_than, &scan_range::at_most,
                            &scan_range::greater_than, &scan_range::at_least, &scan_range::starts_with}) {
    (left.*member).insert((right.*member).begin(), (right.*member).end());
  }
  return left;
}

}  // namespace key

plan scan(const table_variable& variable, std::string_view index, std::vector<scan_range> ranges, walk direction) {
  const index_info found = variable.names().index(variable.table(), index);
  if (ranges.size() > found.columns.size()) {
    throw std::invalid_argument("index \"" + found.name + "\" of table \"" + variable.table().name + "\" has " +
                                std::to_string(found.columns.size()) + " key columns, not " +
                                std::to_string(ranges.size()));
  }
  return QueryPlan::Scan{variable.variable(), found.object, std::move(ranges), direction == walk::ascending};
}

plan filter(expression predicate, plan child) { return QueryPlan::Filter{std::move(predicate), own(std::move(child))}; }
plan project(std::vector<expression> columns, plan child) {
  return QueryPlan::Projection{std::move(columns), own(std::move(child))};
}
plan extend(std::vector<assignment> computations, plan child) {
  return QueryPlan::Extension{std::move(computations), own(std::move(child))};
}
plan group(std::vector<aggregate> aggregates, std::vector<assignment> group_by, plan child) {
  return QueryPlan::Aggregation{std::move(aggregates), std::move(group_by), own(std::move(child))};
}
plan order(std::vector<order_key> keys, plan child) {
  return QueryPlan::OrderBy{std::move(keys), own(std::move(child))};
}
plan limit(std::optional<expression> limit, std::optional<expression> offset, plan child) {
  return QueryPlan::LimitOffset{std::move(limit), std::move(offset), own(std::move(child))};
}

order_key ascending(expression of) { return {true, std::move(of)}; }
order_key descending(expression of) { return {false, std::move(of)}; }

plan reach(const table_variable& followed, plan child) { return extend({definition_of(followed)}, std::move(child)); }

plan generate(assignment computed) {
  return QueryPlan::GenerativeAssignment{std::move(computed.expression), std::move(computed.column)};
}
plan bind(const table_variable& followed) { return generate(definition_of(followed)); }

plan join(plan left, plan right) { return QueryPlan::NestedLoopJoin{own(std::move(left)), own(std::move(right))}; }
plan left_join(plan left, plan right) { return QueryPlan::LeftJoin{own(std::move(left)), own(std::move(right))}; }
plan full_join(std::optional<expression> condition, plan left, plan right) {
  return QueryPlan::FullJoin{std::move(condition), own(std::move(left)), own(std::move(right))};
}
plan unite(plan left, plan right) { return QueryPlan::Union{own(std::move(left)), own(std::move(right))}; }

}  // namespace ovhost
