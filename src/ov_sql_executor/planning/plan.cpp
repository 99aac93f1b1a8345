#include "ov_sql_executor/planning/plan.hpp"

#include <memory>
#include <utility>

#include "ov_sql_executor/errors/raise.hpp"
#include "ov_sql_executor/execution/stack_guard.hpp"
#include "ov_sql_executor/planning/node_translation.hpp"
#include "ov_sql_executor/planning/result_columns.hpp"
#include "ov_sql_executor/planning/stack_need.hpp"
#include "ov_sql_executor/support/stack_weights.hpp"
#include "ov_sql_executor/support/thread_stack.hpp"

namespace physical_to_exec {

std::tuple<ov::sql_executor::runnable, std::vector<column_type>> Plan(
    physical_queryplan::QueryPlan::PredicateVariant argument) {
  // A parameter may outlive the call in the caller's frame; the plan must not.
  const physical_queryplan::QueryPlan::PredicateVariant plan = std::move(argument);
  const std::size_t need = stack_need(plan);
  const bool is_deep = need > ov::sql_executor::stack_weights::unchecked;
  if (is_deep) ov::sql_executor::require_stack(need);
  std::vector<ov::sql_executor::value> constants;
  translation_lists lists{constants};
  translation translated = translate(plan, lists);
  const auto* root = std::get_if<physical_queryplan::QueryPlan::Projection>(&plan);
  if (root == nullptr) {
    error_handling::raise_not_implemented(error_handling::no_detail, L"Not implemented error");
  }
  std::vector<column_type> types = result_columns(*root);
  if (is_deep) translated.node = std::make_unique<ov::sql_executor::stack_guard>(std::move(translated.node), need);
  return {ov::sql_executor::runnable{std::move(translated.node), std::move(constants)}, std::move(types)};
}

}  // namespace physical_to_exec
