#include "ov_sql_executor/planning/column_definition.hpp"

#include <variant>
#include <vector>

#include "ov_sql_executor/planning/aggregate_translation.hpp"

namespace physical_to_exec {

namespace {

using namespace physical_queryplan::QueryPlan;  // the alternatives are named one by one below
using physical_queryplan::column_ref;
using physical_queryplan::expression;

const expression* defined_by(const std::vector<assignment>& assignments, const column_ref& column) {
  for (const assignment& each : assignments) {
    if (each.column == column) return &each.expression;
  }
  return nullptr;
}

const expression* defined_by(const std::vector<aggregate>& aggregates, const column_ref& column) {
  for (const aggregate& each : aggregates) {
    const std::vector<expression>& arguments = inside(each).arguments;
    if (result_column(each) == column && !arguments.empty()) return &arguments.front();
  }
  return nullptr;
}

const expression* own_definition(const GenerativeAssignment& plan, const column_ref& column) {
  return plan.column == column ? &plan.expression : nullptr;
}
const expression* own_definition(const Extension& plan, const column_ref& column) {
  return defined_by(plan.assignments, column);
}
const expression* own_definition(const Aggregation& plan, const column_ref& column) {
  const expression* found = defined_by(plan.aggregates, column);
  return found != nullptr ? found : defined_by(plan.group_by, column);
}
template <class Alternative>
const expression* own_definition(const Alternative& /*plan*/, const column_ref& /*column*/) {
  return nullptr;
}

template <class Alternative>
const expression* definition_below(const Alternative& plan, const column_ref& column) {
  if constexpr (requires { plan.left; }) {
    const expression* found = find_definition(*plan.left, column);
    return found != nullptr ? found : find_definition(*plan.right, column);
  } else if constexpr (requires { plan.child; }) {
    return find_definition(*plan.child, column);
  } else {
    return nullptr;
  }
}

}  // namespace

const expression* find_definition(const PredicateVariant& plan, const column_ref& column) {
  return std::visit(
      [&column](const auto& alternative) {
        const expression* own = own_definition(alternative, column);
        return own != nullptr ? own : definition_below(alternative, column);
      },
      plan);
}

}  // namespace physical_to_exec
