#include "ov_sql_executor/planning/column_definition.hpp"

#include <variant>
#include <vector>

#include "ov_sql_executor/planning/aggregate_translation.hpp"

namespace physical_to_exec {

namespace {

using namespace physical_queryplan::QueryPlan;  // the alternatives are named one by one below
using physical_queryplan::column_ref;
using physical_queryplan::computed;
using physical_queryplan::expression;

class definition_search {
 public:
  reference_definitions extensions;
  reference_definitions others;  // of groupings, which may repeat the name of what they group by, and of others

  void operator()(const GenerativeAssignment& plan) { define(others, plan.column, plan.expression); }
  void operator()(const Extension& plan) { define(extensions, plan.assignments); }
  void operator()(const Aggregation& plan) {
    for (const aggregate& each : plan.aggregates) {
      const std::vector<expression>& arguments = common_fields(each).arguments;
      if (!arguments.empty()) define(others, result_column(each), arguments.front());
    }
    define(others, plan.group_by);
  }
  // These pass on what their inputs define, or the objects of a scan.
  void operator()(const NestedLoopJoin& /*plan*/) {}
  void operator()(const LeftJoin& /*plan*/) {}
  void operator()(const FullJoin& /*plan*/) {}
  void operator()(const Scan& /*plan*/) {}
  void operator()(const Filter& /*plan*/) {}
  void operator()(const Projection& /*plan*/) {}
  void operator()(const OrderBy& /*plan*/) {}
  void operator()(const LimitOffset& /*plan*/) {}
  void operator()(const Union& /*plan*/) {}

 private:
  static void define(reference_definitions& found, const std::vector<assignment>& assignments) {
    for (const assignment& each : assignments) define(found, each.column, each.expression);
  }
  static void define(reference_definitions& found, const column_ref& column, const expression& definition) {
    const auto* reference = std::get_if<computed<OV_OBJ_REF>>(&column);
    if (reference == nullptr) return;
    const auto* source = std::get_if<computed<OV_OBJ_REF>>(&definition);
    if (source != nullptr && source->id == reference->id) return;  // passes on what its input defines
    found.emplace(reference->id, &definition);
  }
};

}  // namespace

reference_definitions find_reference_definitions(const PredicateVariant& plan) {
  definition_search search;
  std::vector<const PredicateVariant*> to_visit = {&plan};  // the next one last
  while (!to_visit.empty()) {
    const PredicateVariant& next = *to_visit.back();
    to_visit.pop_back();
    std::visit(search, static_cast<const predicate_variant&>(next));
    const auto [left, right] = find_children(next);
    if (right != nullptr) to_visit.push_back(right->get());
    if (left != nullptr) to_visit.push_back(left->get());
  }
  search.extensions.merge(search.others);  // adds those that are missing
  return std::move(search.extensions);
}

}  // namespace physical_to_exec
