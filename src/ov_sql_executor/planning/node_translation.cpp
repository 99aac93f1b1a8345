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
#include "ov_sql_executor/execution/keeping/keeping_policy.hpp"
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
  node_translator(translation_lists& lists, const scope& outer, const position_list& changing_from)
      : lists_(lists), constants_(lists.constants), outer_(outer), changing_from_(changing_from) {}

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
    const bool may_have_key =
        keeps_anything() && !changing_from_.empty() && !changing(changing_from_.back()).contains_any(child.reads);
    split_condition condition(plan.predicate, constants_, inner, lists_.computed,
                              may_have_key ? split_condition::use::by_key : split_condition::use::as_a_whole);
    const auto changed = find_changing(condition.reads());
    if (may_have_key && changed && !changed->contains_any(child.reads) &&
        condition.find_keys({outer_.size(), outer_.size() + child.columns.size()}, *changed)) {
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
    note_computed(plan.column);
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
    translation right = plan.condition ? translate_input(plan.right, outer_) : translate_inner_side(plan.right, outer_);
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
    split_condition condition(*plan.condition, constants_, inner, lists_.computed,
                              keeps_anything() ? split_condition::use::by_key : split_condition::use::as_a_whole);
    keep_changing_sides(left, right, condition.reads());
    const std::size_t right_start = outer_.size() + left_width;
    if (condition.find_keys({right_start, right_start + right_width}, {outer_.size(), right_start})) {
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

  void append_columns(scope& columns, const std::vector<assignment>& assignments) const {
    for (const assignment& each : assignments) {
      columns.push_back(require_value(each.column));
      note_computed(each.column);
    }
  }

  void note_computed(const physical_queryplan::column_ref& column) const {
    const auto* const object = std::get_if<physical_queryplan::variable>(&column);
    if (object != nullptr) lists_.computed.push_back(*object);
  }

  static void append(scope& columns, scope more) {
    columns.insert(columns.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
  }

  translation translate_input(const child_ptr& plan, const scope& outer) const {
    return translate_input(plan, outer, changing_from_);
  }
  translation translate_input(const child_ptr& plan, const scope& outer, const position_list& changing_from) const {
    if (plan == nullptr) error_handling::raise_not_implemented(error_handling::no_detail, L"Not implemented error");
    return translate(*plan, lists_, outer, changing_from);
  }

  // Of a join whose outer row begins where the outer rows of this node end.
  translation translate_inner_side(const child_ptr& plan, const scope& visible) const {
    position_list changing_from = changing_from_;
    changing_from.push_back(outer_.size());
    return translate_input(plan, visible, changing_from);
  }

  // What changes with an outer row that begins there.
  position_range changing(std::size_t from) const { return {from, outer_.size()}; }

  // What changes each time that something which reads this of the row stack has to be made anew; nothing where it is
  // always the same.
  std::optional<position_range> find_changing(const read_list& reads) const {
    for (auto from = changing_from_.rbegin(); from != changing_from_.rend(); ++from) {
      if (changing(*from).contains_any(reads)) return changing(*from);
    }
    return std::nullopt;
  }

  static std::optional<std::size_t> last_of(const read_list& reads) {
    if (reads.empty()) return std::nullopt;
    return static_cast<std::size_t>(*std::max_element(reads.begin(), reads.end()));
  }

  static bool keeps_anything() {
    using ov::sql_executor::keeping_policy;
    return ov::sql_executor::current_keeping_policy.keeps_from != keeping_policy::from::never;
  }

  static void keep(translation& part) {
    if (part.is_cheap || !keeps_anything()) return;
    part.node = std::make_unique<ov::sql_executor::kept_side>(std::move(part.node), last_of(part.reads));
  }

  // Of what is read, the outer rows count.
  void add_reads(read_list& reads, const read_list& more) const {
    for (const std::int16_t each : more) {
      if (static_cast<std::size_t>(each) < outer_.size()) reads.push_back(each);
    }
  }

  // Keeps the child's rows where they stay the same while what its parent makes of them changes.
  void keep_unless_constant(translation& child, const read_list& parent_reads) const {
    const auto changed = find_changing(parent_reads);
    if (changed) keep_constant(child, *changed);
    add_reads(child.reads, parent_reads);
    child.is_cheap = false;
  }

  static void keep_constant(translation& part, position_range changed) {
    if (!changed.contains_any(part.reads)) keep(part);
  }

  // Likewise for two sides, of which one may change the other's parent.
  void keep_changing_sides(translation& left, translation& right, const read_list& parent_reads) const {
    read_list all = parent_reads;
    add_reads(all, left.reads);
    add_reads(all, right.reads);
    if (const auto changed = find_changing(all)) {
      keep_constant(left, *changed);
      keep_constant(right, *changed);
    }
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
    translation right = translate_inner_side(plan.right, visible);
    keep_constant(right, {outer_.size(), visible.size()});
    if (const auto changed = find_changing(right.reads)) keep_constant(left, *changed);
    return {std::move(left), std::move(right)};
  }

  std::unique_ptr<operator_base> row_count(const std::optional<physical_queryplan::expression>& stated,
                                           std::uint64_t otherwise, const visible_columns& enclosing) const {
    if (stated) return translate_expression(*stated, constants_, enclosing);
    const std::int16_t position = ov::sql_executor::add_constant(constants_, otherwise);
    return std::make_unique<value_from_context>(context_list::constants, position);
  }

  translation_lists& lists_;
  std::vector<value>& constants_;  // of the lists
  const scope& outer_;
  const position_list& changing_from_;
};

}  // namespace

translation translate(const PredicateVariant& plan, translation_lists& lists, const scope& outer,
                      const position_list& changing_from) {
  return std::visit(node_translator(lists, outer, changing_from), require_value(plan));
}

}  // namespace physical_to_exec
