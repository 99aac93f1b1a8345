#include "ov_sql_executor/planning/scan_conditions.hpp"

#include <set>

#include "ov_sql_executor/expressions/expression_translation.hpp"

namespace physical_to_exec {

namespace {

using ov::sql_executor::key_condition;
using ov::sql_executor::key_operation;
using ov::sql_executor::value;
using ov::sql_executor::visible_columns;
using physical_queryplan::QueryPlan::bound;
using physical_queryplan::QueryPlan::scan_range;

struct bound_set {
  std::set<bound> scan_range::*bounds;
  key_operation op;
};

// The order in which the bounds of a column are evaluated.
constexpr bound_set bound_sets[] = {
    {&scan_range::equal_to, key_operation::equal},    {&scan_range::greater_than, key_operation::greater},
    {&scan_range::at_least, key_operation::at_least}, {&scan_range::less_than, key_operation::less},
    {&scan_range::at_most, key_operation::at_most},   {&scan_range::starts_with, key_operation::starts_with},
};

std::vector<key_condition> translate_range(const scan_range& range, std::vector<value>& constants,
                                           const visible_columns& outer) {
  std::vector<key_condition> conditions;
  for (const bound_set& set : bound_sets) {
    for (const bound& each : range.*set.bounds) {
      auto expression = ov::sql_executor::translate_expression(each.expression, constants, outer);
      conditions.push_back({set.op, each.rejects_null, ov::sql_executor::operators::operand(std::move(expression))});
    }
  }
  return conditions;
}

}  // namespace

std::vector<std::vector<key_condition>> translate_ranges(const std::vector<scan_range>& ranges,
                                                         std::vector<value>& constants, const visible_columns& outer) {
  std::vector<std::vector<key_condition>> conditions;
  conditions.reserve(ranges.size());
  for (const scan_range& range : ranges) conditions.push_back(translate_range(range, constants, outer));
  return conditions;
}

}  // namespace physical_to_exec
