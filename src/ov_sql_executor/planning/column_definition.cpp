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
  reference_definitions found;

  void operator()(const GenerativeAssignment& plan) { define(plan.column, plan.expression); }
  void operator()(const Extension& plan) { define(plan.assignments); }
  void operator()(const Aggregation& plan) {
    for (const aggregate& each : plan.aggregates) {
      const std::vector<expression>& arguments = inside(each).arguments;
      if (!arguments.empty()) define(result_column(each), arguments.front());
    }
    define(plan.group_by);
  }
  template <class Alternative>
  void operator()(const Alternative& /*plan*/) {}

 private:
  void define(const std::vector<assignment>& assignments) {
    for (const assignment& each : assignments) define(each.column, each.expression);
  }
  void define(const column_ref& column, const expression& definition) {
    if (const auto* reference = std::get_if<computed<OV_OBJ_REF>>(&column)) found.emplace(reference->id, &definition);
  }
};

}  // namespace

reference_definitions find_reference_definitions(const PredicateVariant& plan) {
  definition_search search;
  std::vector<const PredicateVariant*> open = {&plan};  // the next one last
  while (!open.empty()) {
    const PredicateVariant& next = *open.back();
    open.pop_back();
    std::visit(search, static_cast<const predicate_variant&>(next));
    const auto [left, right] = find_children(next);
    if (right != nullptr) open.push_back(right->get());
    if (left != nullptr) open.push_back(left->get());
  }
  return std::move(search.found);
}

}  // namespace physical_to_exec
