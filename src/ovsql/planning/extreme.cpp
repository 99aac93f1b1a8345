#include "ovhost/plans/expressions.hpp"
#include "ovsql/planning/planner.hpp"

namespace ovsql {
namespace {

using namespace physical_queryplan;

// The key range of the objects that have a value.
ovhost::scan_range with_value() {
  ovhost::scan_range range;
  range.greater_than.insert({ovhost::null(), false});
  return range;
}

}  // namespace

// The least or greatest value of a column, alone in its SELECT over a whole table, is the first of an index.
std::optional<plan> planner::find_extreme(const select_body& of) const {
  const bool is_alone = of.grouped && of.group_by.empty() && !of.regrouped && of.aggregates.size() == 1 &&
                        of.from.items.size() == 1 && of.from.conditions.empty() &&
                        of.from.items.front().kind == item_kind::table;
  if (!is_alone) return std::nullopt;
  const aggregate& sought = of.aggregates.front();
  const bool greatest = std::holds_alternative<QueryPlan::Maximum>(sought);
  if (!greatest && !std::holds_alternative<QueryPlan::Minimum>(sought)) return std::nullopt;
  const item& from = of.from.items.front();
  const auto& arguments = std::visit(
      [](const QueryPlan::aggregation& held) -> const std::vector<expression>& { return held.arguments; }, sought);
  const auto column = column_of(arguments.front(), from);
  if (!column) return std::nullopt;
  for (const index& each : from.table->indexes) {
    const index_key_column& first = each.key.front();
    if (first.column != *column) continue;
    plan walk = QueryPlan::Scan{from.variable, each.object, {with_value()}, first.ascending != greatest};
    return ovhost::limit(ovhost::lit(std::uint64_t{1}), std::nullopt, std::move(walk));
  }
  return std::nullopt;
}

}  // namespace ovsql
