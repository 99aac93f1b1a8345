#include "ov_sql_executor/planning/node_translation.hpp"

#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>
#include <variant>

#include "ov_sql_executor/database/metadata.hpp"
#include "ov_sql_executor/errors/raise.hpp"
#include "ov_sql_executor/errors/require_value.hpp"
#include "ov_sql_executor/execution/aggregator.hpp"
#include "ov_sql_executor/execution/filter.hpp"
#include "ov_sql_executor/execution/full_join.hpp"
#include "ov_sql_executor/execution/generative_assignment.hpp"
#include "ov_sql_executor/execution/left_join.hpp"
#include "ov_sql_executor/execution/limit_offset.hpp"
#include "ov_sql_executor/execution/nested_loop_inner_join.hpp"
#include "ov_sql_executor/execution/order_by.hpp"
#include "ov_sql_executor/execution/projection.hpp"
#include "ov_sql_executor/execution/scan.hpp"
#include "ov_sql_executor/execution/uniond.hpp"
#include "ov_sql_executor/expressions/constants.hpp"
#include "ov_sql_executor/expressions/expression_translation.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"
#include "ov_sql_executor/planning/aggregate_translation.hpp"
#include "ov_sql_executor/planning/scan_conditions.hpp"

namespace physical_to_exec {

namespace {

using namespace physical_queryplan::QueryPlan;  // the alternatives are named one by one below
using error_handling::require_value;
using ov::sql_executor::join_scopes;
using ov::sql_executor::projection;
using ov::sql_executor::scope;
using ov::sql_executor::to_column_ref;
using ov::sql_executor::to_expression;
using ov::sql_executor::translate_expression;
using ov::sql_executor::translate_expressions;
using ov::sql_executor::value;
using ov::sql_executor::visible_columns;
using ov::sql_executor::operators::context_list;
using ov::sql_executor::operators::operator_base;
using ov::sql_executor::operators::value_from_context;

class node_translator {
 public:
  node_translator(std::vector<value>& constants, const scope& outer) : constants_(constants), outer_(outer) {}

  translation operator()(const Scan& plan) const {
    const std::uint64_t handle = meta_data::index_handle(plan.index);
    std::vector<meta_data::key_column> key_columns = meta_data::index_key_columns(plan.index);
    auto conditions = translate_ranges(plan.ranges, constants_, outer_);
    return {{plan.variable},
            std::make_unique<ov::sql_executor::scan>(std::move(conditions), handle, std::move(key_columns),
                                                     plan.ascending)};
  }

  translation operator()(const Filter& plan) const {
    translation child = translate_input(plan.child, outer_);
    auto predicate = translate_expression(plan.predicate, constants_, {outer_, child.columns});
    child.node = std::make_unique<ov::sql_executor::filter>(std::move(child.node), std::move(predicate));
    return child;
  }

  // Leaves out a projection that only repeats its input.
  translation operator()(const Projection& plan) const {
    translation child = translate_input(plan.child, outer_);
    auto items = translate_expressions(plan.items, constants_, {outer_, child.columns});
    scope columns;
    columns.reserve(plan.items.size());
    for (const auto& item : plan.items) columns.push_back(to_column_ref(item));
    if (columns == child.columns) return child;
    return {std::move(columns), std::make_unique<projection>(std::move(child.node), std::move(items))};
  }

  translation operator()(const GenerativeAssignment& plan) const {
    auto expression = translate_expression(plan.expression, constants_, outer_);
    return {{require_value(plan.column)},
            std::make_unique<ov::sql_executor::generative_assignment>(std::move(expression))};
  }

  // Puts the input's values first, the assignments after them.
  translation operator()(const Extension& plan) const {
    translation child = translate_input(plan.child, outer_);
    const visible_columns inner(outer_, child.columns);
    if (!finds_own_columns(child, inner)) return copying_extension(plan, std::move(child));
    std::vector<std::unique_ptr<operator_base>> values = translate_assignments(plan.assignments, inner);
    child.columns_in_place = child.columns.size();
    append_columns(child.columns, plan.assignments);
    child.node =
        std::make_unique<projection>(std::move(child.node), std::move(values), projection::input_row::extended);
    return child;
  }

  translation operator()(const NestedLoopJoin& plan) const {
    auto [left, right] = dependent_sides(plan);
    auto join = std::make_unique<ov::sql_executor::nested_loop_inner_join>(std::move(left.node), std::move(right.node));
    append(left.columns, std::move(right.columns));
    return {std::move(left.columns), std::move(join), left.columns_in_place};
  }

  translation operator()(const LeftJoin& plan) const {
    auto [left, right] = dependent_sides(plan);
    auto join = std::make_unique<ov::sql_executor::left_join>(std::move(left.node), std::move(right.node),
                                                              right.columns.size());
    append(left.columns, std::move(right.columns));
    return {std::move(left.columns), std::move(join), left.columns_in_place};
  }

  translation operator()(const FullJoin& plan) const {
    translation left = translate_input(plan.left, outer_);
    translation right = translate_input(plan.right, outer_);
    const std::size_t left_width = left.columns.size();
    const std::size_t right_width = right.columns.size();
    append(left.columns, std::move(right.columns));
    std::optional<std::unique_ptr<operator_base>> condition;
    if (plan.condition) condition = translate_expression(*plan.condition, constants_, {outer_, left.columns});
    auto join = std::make_unique<ov::sql_executor::full_join>(std::move(left.node), std::move(right.node), left_width,
                                                              right_width, std::move(condition));
    return {std::move(left.columns), std::move(join), left.columns_in_place};
  }

  // Puts the aggregates first in the row, the group keys after them.
  translation operator()(const Aggregation& plan) const {
    translation child = translate_input(plan.child, outer_);
    const visible_columns inner(outer_, child.columns);
    std::vector<std::unique_ptr<operator_base>> keys = translate_assignments(plan.group_by, inner);
    std::vector<ov::sql_executor::aggregate_entry> entries;
    for (const aggregate& each : plan.aggregates) entries.push_back(translate_aggregate(each, constants_, inner));
    scope columns;
    for (const aggregate& each : plan.aggregates) columns.push_back(result_column(each));
    append_columns(columns, plan.group_by);
    return {std::move(columns),
            std::make_unique<ov::sql_executor::aggregator>(std::move(child.node), std::move(keys), std::move(entries))};
  }

  translation operator()(const OrderBy& plan) const {
    translation child = translate_input(plan.child, outer_);
    const visible_columns inner(outer_, child.columns);
    std::vector<bool> directions;
    std::vector<std::unique_ptr<operator_base>> keys;
    for (const order_key& key : plan.keys) {
      directions.push_back(key.ascending);
      keys.push_back(translate_expression(key.expression, constants_, inner));
    }
    child.node =
        std::make_unique<ov::sql_executor::order_by>(std::move(child.node), std::move(keys), std::move(directions));
    return child;
  }

  // Limit and offset see the enclosing rows only.
  translation operator()(const LimitOffset& plan) const {
    translation child = translate_input(plan.child, outer_);
    auto limit = row_count(plan.limit, std::numeric_limits<std::uint64_t>::max());
    auto offset = row_count(plan.offset, 0);
    child.node =
        std::make_unique<ov::sql_executor::limit_offset>(std::move(child.node), std::move(limit), std::move(offset));
    return child;
  }

  translation operator()(const Union& plan) const {
    translation left = translate_input(plan.left, outer_);
    translation right = translate_input(plan.right, outer_);
    if (left.columns != right.columns) {
      error_handling::raise_not_implemented(error_handling::no_detail, L"Not implemented error");
    }
    left.node = std::make_unique<ov::sql_executor::uniond>(std::move(left.node), std::move(right.node));
    return left;
  }

 private:
  // Tells whether each column of a row is found in that row when it is looked up by name. A column of the same name in
  // an enclosing row would hide it.
  bool finds_own_columns(const translation& input, const visible_columns& inner) const {
    for (std::size_t i = input.columns_in_place; i < input.columns.size(); ++i) {
      const auto position = inner.find_in_scope(input.columns[i]);
      if (static_cast<std::size_t>(*position) != outer_.size() + i) return false;
    }
    return true;
  }

  translation copying_extension(const Extension& plan, translation child) const {
    const visible_columns inner(outer_, child.columns);
    std::vector<std::unique_ptr<operator_base>> expressions;
    expressions.reserve(child.columns.size() + plan.assignments.size());
    for (const auto& column : child.columns) {
      expressions.push_back(translate_expression(to_expression(column), constants_, inner));
    }
    for (const assignment& added : plan.assignments) {
      expressions.push_back(translate_expression(added.expression, constants_, inner));
    }
    append_columns(child.columns, plan.assignments);
    return {std::move(child.columns), std::make_unique<projection>(std::move(child.node), std::move(expressions))};
  }

  // Translates the expressions only. The columns have their turn when every expression is translated.
  std::vector<std::unique_ptr<operator_base>> translate_assignments(const std::vector<assignment>& assignments,
                                                                    const visible_columns& inner) const {
    std::vector<std::unique_ptr<operator_base>> values;
    values.reserve(assignments.size());
    for (const assignment& each : assignments) {
      values.push_back(translate_expression(each.expression, constants_, inner));
    }
    return values;
  }

  static void append_columns(scope& columns, const std::vector<assignment>& assignments) {
    for (const assignment& each : assignments) columns.push_back(require_value(each.column));
  }

  static void append(scope& columns, scope more) {
    columns.insert(columns.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
  }

  translation translate_input(const child_ptr& plan, const scope& outer) const {
    if (plan == nullptr) error_handling::raise_not_implemented(error_handling::no_detail, L"Not implemented error");
    return translate(*plan, constants_, outer);
  }

  // Lets the right side see the left row.
  template <class Alternative>
  std::pair<translation, translation> dependent_sides(const Alternative& plan) const {
    translation left = translate_input(plan.left, outer_);
    translation right = translate_input(plan.right, join_scopes(outer_, left.columns));
    return {std::move(left), std::move(right)};
  }

  std::unique_ptr<operator_base> row_count(const std::optional<physical_queryplan::expression>& stated,
                                           std::uint64_t otherwise) const {
    if (stated) return translate_expression(*stated, constants_, outer_);
    const std::int16_t position = ov::sql_executor::add_constant(constants_, otherwise);
    return std::make_unique<value_from_context>(context_list::constants, position);
  }

  std::vector<value>& constants_;
  const scope& outer_;
};

}  // namespace

translation translate(const PredicateVariant& plan, std::vector<value>& constants, const scope& outer) {
  return std::visit(node_translator(constants, outer), require_value(plan));
}

}  // namespace physical_to_exec
