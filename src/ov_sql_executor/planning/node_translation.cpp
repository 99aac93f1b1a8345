#include "ov_sql_executor/planning/node_translation.hpp"

#include <algorithm>
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
#include "ov_sql_executor/execution/keeping/kept_side.hpp"
#include "ov_sql_executor/execution/keeping/lookup_filter.hpp"
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
  node_translator(std::vector<value>& constants, const scope& outer, std::size_t changing_from)
      : constants_(constants), outer_(outer), changing_{std::min(changing_from, outer.size()), outer.size()} {}

  translation operator()(const Scan& plan) const {
    const std::uint64_t handle = meta_data::index_handle(plan.index);
    std::vector<meta_data::key_column> key_columns = meta_data::index_key_columns(plan.index);
    const visible_columns enclosing(outer_);
    auto conditions = translate_ranges(plan.ranges, constants_, enclosing);
    translation scan{{plan.variable},
                     std::make_unique<ov::sql_executor::scan>(std::move(conditions), handle, std::move(key_columns),
                                                              plan.ascending)};
    scan.reads = enclosing.take_reads();
    return scan;
  }

  translation operator()(const Filter& plan) const {
    translation child = translate_input(plan.child, outer_);
    const visible_columns inner(outer_, child.columns);
    const bool may_have_key = changing_.begin < changing_.end && is_constant(child.reads);
    split_condition condition(plan.predicate, constants_, inner,
                              may_have_key ? split_condition::use::by_key : split_condition::use::as_a_whole);
    if (may_have_key && !is_constant(condition.reads()) &&
        condition.find_key({outer_.size(), outer_.size() + child.columns.size()}, changing_)) {
      read_list kept_by = child.reads;
      add_reads(kept_by, condition.key_reads());
      child.node = std::make_unique<ov::sql_executor::lookup_filter>(std::move(child.node), condition.take_keyed(),
                                                                     last_of(kept_by));
      add_reads(child.reads, condition.reads());
      return child;
    }
    keep_unless_constant(child, condition.reads());
    child.node = std::make_unique<ov::sql_executor::filter>(std::move(child.node), condition.take_whole());
    return child;
  }

  // Leaves out a projection that only repeats its input.
  translation operator()(const Projection& plan) const {
    translation child = translate_input(plan.child, outer_);
    const visible_columns inner(outer_, child.columns);
    auto items = translate_expressions(plan.items, constants_, inner);
    scope columns;
    columns.reserve(plan.items.size());
    for (const auto& item : plan.items) columns.push_back(to_column_ref(item));
    if (columns == child.columns) return child;
    keep_unless_constant(child, inner.take_reads());
    child.node = std::make_unique<projection>(std::move(child.node), std::move(items));
    child.columns = std::move(columns);
    child.columns_in_place = 0;
    return child;
  }

  translation operator()(const GenerativeAssignment& plan) const {
    const visible_columns enclosing(outer_);
    auto expression = translate_expression(plan.expression, constants_, enclosing);
    translation one_row{{require_value(plan.column)},
                        std::make_unique<ov::sql_executor::generative_assignment>(std::move(expression))};
    one_row.reads = enclosing.take_reads();
    one_row.is_cheap = true;
    return one_row;
  }

  // Puts the input's values first, the assignments after them.
  translation operator()(const Extension& plan) const {
    translation child = translate_input(plan.child, outer_);
    const visible_columns inner(outer_, child.columns);
    if (!finds_own_columns(child, inner)) return copying_extension(plan, std::move(child));
    std::vector<std::unique_ptr<operator_base>> values = translate_assignments(plan.assignments, inner);
    child.columns_in_place = child.columns.size();
    append_columns(child.columns, plan.assignments);
    keep_unless_constant(child, inner.take_reads());
    child.node =
        std::make_unique<projection>(std::move(child.node), std::move(values), projection::input_row::extended);
    return child;
  }

  translation operator()(const NestedLoopJoin& plan) const {
    auto [left, right] = dependent_sides(plan);
    left.node = std::make_unique<ov::sql_executor::nested_loop_inner_join>(std::move(left.node), std::move(right.node));
    return join_columns(std::move(left), std::move(right));
  }

  translation operator()(const LeftJoin& plan) const {
    auto [left, right] = dependent_sides(plan);
    left.node = std::make_unique<ov::sql_executor::left_join>(std::move(left.node), std::move(right.node),
                                                              right.columns.size());
    return join_columns(std::move(left), std::move(right));
  }

  // Neither side sees the other. Without a condition the right side is read again for each left row.
  translation operator()(const FullJoin& plan) const {
    translation left = translate_input(plan.left, outer_);
    translation right =
        plan.condition ? translate_input(plan.right, outer_) : translate_input(plan.right, outer_, outer_.size());
    const std::size_t left_width = left.columns.size();
    const std::size_t right_width = right.columns.size();
    if (!plan.condition) {
      keep(right);
      keep_unless_constant(left, right.reads);
      left.node = std::make_unique<ov::sql_executor::full_join>(std::move(left.node), std::move(right.node), left_width,
                                                                right_width, std::nullopt);
      return join_columns(std::move(left), std::move(right));
    }
    const scope both = join_scopes(left.columns, right.columns);
    const visible_columns inner(outer_, both);
    split_condition condition(*plan.condition, constants_, inner, split_condition::use::by_key);
    keep_changing_sides(left, right, condition.reads());
    const std::size_t right_start = outer_.size() + left_width;
    if (condition.find_key({right_start, right_start + right_width}, {outer_.size(), right_start})) {
      left.node = std::make_unique<ov::sql_executor::full_join>(std::move(left.node), std::move(right.node), left_width,
                                                                right_width, condition.take_keyed());
    } else {
      left.node = std::make_unique<ov::sql_executor::full_join>(std::move(left.node), std::move(right.node), left_width,
                                                                right_width, condition.take_whole());
    }
    return join_columns(std::move(left), std::move(right));
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
    keep_unless_constant(child, inner.take_reads());
    child.node =
        std::make_unique<ov::sql_executor::aggregator>(std::move(child.node), std::move(keys), std::move(entries));
    child.columns = std::move(columns);
    child.columns_in_place = 0;
    return child;
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
    keep_unless_constant(child, inner.take_reads());
    child.node =
        std::make_unique<ov::sql_executor::order_by>(std::move(child.node), std::move(keys), std::move(directions));
    return child;
  }

  // Limit and offset see the enclosing rows only.
  translation operator()(const LimitOffset& plan) const {
    translation child = translate_input(plan.child, outer_);
    const visible_columns enclosing(outer_);
    auto limit = row_count(plan.limit, std::numeric_limits<std::uint64_t>::max(), enclosing);
    auto offset = row_count(plan.offset, 0, enclosing);
    keep_unless_constant(child, enclosing.take_reads());
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
    keep_changing_sides(left, right, {});
    left.node = std::make_unique<ov::sql_executor::uniond>(std::move(left.node), std::move(right.node));
    add_reads(left.reads, right.reads);
    left.is_cheap = false;
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
    keep_unless_constant(child, inner.take_reads());
    child.node = std::make_unique<projection>(std::move(child.node), std::move(expressions));
    child.columns_in_place = 0;
    return child;
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
    return translate_input(plan, outer, changing_.begin < changing_.end ? changing_.begin : nothing_changes);
  }
  translation translate_input(const child_ptr& plan, const scope& outer, std::size_t changing_from) const {
    if (plan == nullptr) error_handling::raise_not_implemented(error_handling::no_detail, L"Not implemented error");
    return translate(*plan, constants_, outer, changing_from);
  }

  // Whether rows that read this of the row stack are the same each time this part of an inner side is started.
  bool is_constant(const read_list& reads) const { return !changing_.contains_any(reads); }

  static std::optional<std::size_t> last_of(const read_list& reads) {
    if (reads.empty()) return std::nullopt;
    return static_cast<std::size_t>(*std::max_element(reads.begin(), reads.end()));
  }

  static void keep(translation& part) {
    if (part.is_cheap) return;
    part.node = std::make_unique<ov::sql_executor::kept_side>(std::move(part.node), last_of(part.reads));
  }

  // Of what is read, the outer rows count.
  void add_reads(read_list& reads, const read_list& more) const {
    for (const std::int16_t each : more) {
      if (static_cast<std::size_t>(each) < outer_.size()) reads.push_back(each);
    }
  }

  // Keeps the child's rows where they are always the same, but what its parent makes of them is not.
  void keep_unless_constant(translation& child, const read_list& parent_reads) const {
    if (is_constant(child.reads) && !is_constant(parent_reads)) keep(child);
    add_reads(child.reads, parent_reads);
    child.is_cheap = false;
  }

  // Likewise for two sides, of which one may change the other's parent.
  void keep_changing_sides(translation& left, translation& right, const read_list& parent_reads) const {
    const bool is_left_constant = is_constant(left.reads);
    const bool is_right_constant = is_constant(right.reads);
    if (is_left_constant && is_right_constant && is_constant(parent_reads)) return;
    if (is_left_constant) keep(left);
    if (is_right_constant) keep(right);
    add_reads(left.reads, parent_reads);
  }

  translation join_columns(translation left, translation right) const {
    append(left.columns, std::move(right.columns));
    add_reads(left.reads, right.reads);
    left.is_cheap = false;
    return left;
  }

  // Lets the right side see the left row.
  template <class Alternative>
  std::pair<translation, translation> dependent_sides(const Alternative& plan) const {
    translation left = translate_input(plan.left, outer_);
    const scope visible = join_scopes(outer_, left.columns);
    translation right = translate_input(plan.right, visible, outer_.size());
    if (!position_range{outer_.size(), visible.size()}.contains_any(right.reads)) keep(right);
    if (is_constant(left.reads) && !is_constant(right.reads)) keep(left);
    return {std::move(left), std::move(right)};
  }

  std::unique_ptr<operator_base> row_count(const std::optional<physical_queryplan::expression>& stated,
                                           std::uint64_t otherwise, const visible_columns& enclosing) const {
    if (stated) return translate_expression(*stated, constants_, enclosing);
    const std::int16_t position = ov::sql_executor::add_constant(constants_, otherwise);
    return std::make_unique<value_from_context>(context_list::constants, position);
  }

  std::vector<value>& constants_;
  const scope& outer_;
  position_range changing_;  // of the outer rows; empty where nothing changes
};

}  // namespace

translation translate(const PredicateVariant& plan, std::vector<value>& constants, const scope& outer,
                      std::size_t changing_from) {
  return std::visit(node_translator(constants, outer, changing_from), require_value(plan));
}

}  // namespace physical_to_exec
