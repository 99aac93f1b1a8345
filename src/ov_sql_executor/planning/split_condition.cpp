#include "ov_sql_executor/planning/split_condition.hpp"

#include <algorithm>
#include <concepts>
#include <utility>
#include <variant>

#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/expressions/chain_operands.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/expression_translation.hpp"
#include "ov_sql_executor/expressions/logical.hpp"
#include "ov_sql_executor/expressions/operand_chain.hpp"

namespace physical_to_exec {

namespace {

using namespace physical_queryplan;  // the alternatives are named one by one below
using ov::sql_executor::keyed_condition;
using ov::sql_executor::keyed_equality;
using ov::sql_executor::translate_expression;
using ov::sql_executor::value;
using ov::sql_executor::visible_columns;
namespace operators = ov::sql_executor::operators;

using operator_ptr = std::unique_ptr<operators::operator_base>;
using comparison_maker = operator_ptr (*)(operator_ptr, operator_ptr);

template <class Comparison>
operator_ptr make(operator_ptr left, operator_ptr right) {
  return std::make_unique<Comparison>(std::move(left), std::move(right));
}

// Null for what is no comparison.
comparison_maker maker_of(const expression& any) {
  static constexpr comparison_maker makers[] = {
      make<operators::equal>,     make<operators::not_equal>,    make<operators::less_than_or_equal>,
      make<operators::less_than>, make<operators::greater_than>, make<operators::greater_than_or_equal>};
  static_assert(std::same_as<std::variant_alternative_t<5, expression_variant>, AtLeast>);
  return any.index() < std::size(makers) ? makers[any.index()] : nullptr;
}

operator_ptr make_and(std::vector<operator_ptr> operands) {
  if (operands.size() == 1) return std::move(operands[0]);
  if (operands.size() > 2) return std::make_unique<operators::all_of>(std::move(operands));
  return std::make_unique<operators::logical_and>(std::move(operands[0]), std::move(operands[1]));
}

}  // namespace

bool position_range::contains_any(const read_list& reads) const {
  return std::ranges::any_of(reads, [this](std::int16_t each) {
    const auto position = static_cast<std::size_t>(each);
    return position >= begin && position < end;
  });
}

split_condition::split_condition(const expression& condition, std::vector<value>& constants,
                                 const visible_columns& columns, const variable_list& computed, use purpose)
    : constants_(constants) {
  if (purpose == use::as_a_whole) {
    whole_ = translate_expression(condition, constants, columns);
    reads_ = columns.take_reads();
    return;
  }
  if (const auto* const chain = std::get_if<And>(&condition)) {
    ov::sql_executor::visit_chain(*chain, [&](const expression& each) { add(each, columns); });
  } else {
    add(condition, columns);
  }
  if (conjuncts_.size() > 1) look_ahead(foresight(columns, computed));
  columns.take_reads();  // of the same columns
}

void split_condition::add(const expression& each, const visible_columns& columns) {
  conjunct& added = conjuncts_.emplace_back();
  added.plan = &each;
  if (maker_of(each) == nullptr) {
    added.left = translate_expression(each, constants_, columns);
    added.left_reads = take_reads(columns);
    return;
  }
  const std::vector<expression>& operands = find_operation(each)->operands;
  added.left = translate_expression(error_handling::element_at(operands, 0), constants_, columns);
  added.left_reads = take_reads(columns);
  added.right = translate_expression(error_handling::element_at(operands, 1), constants_, columns);
  added.right_reads = take_reads(columns);
}

read_list split_condition::take_reads(const visible_columns& columns) {
  read_list reads = columns.take_reads();
  reads_.insert(reads_.end(), reads.begin(), reads.end());
  return reads;
}

void split_condition::look_ahead(const foresight& known) {
  for (conjunct& each : conjuncts_) {
    each.knows_test = known.knows_test(*each.plan);
    if (!each.is_equality()) continue;
    const std::vector<expression>& operands = find_operation(*each.plan)->operands;
    each.knows_operands = known.knows_value(operands[0]) && known.knows_value(operands[1]);
  }
}

bool split_condition::find_keys(position_range kept_row, position_range changing) {
  const auto is_key = [&](const read_list& key, const read_list& probe) {
    return kept_row.contains_any(key) && !changing.contains_any(key) && !kept_row.contains_any(probe);
  };
  bool found = false;
  bool may_raise = false;
  for (conjunct& each : conjuncts_) {
    each.key.reset();
    if (may_raise) continue;
    if (each.is_equality() && (&each == &conjuncts_.front() || each.knows_operands)) {
      if (is_key(each.right_reads, each.left_reads)) each.key = key_side::right;
      if (is_key(each.left_reads, each.right_reads)) each.key = key_side::left;
    }
    found = found || each.key;
    may_raise = !each.key && !each.knows_test;
  }
  return found;
}

read_list split_condition::key_reads() const {
  read_list reads;
  for (const conjunct& each : conjuncts_) {
    if (!each.key) continue;
    const read_list& more = *each.key == key_side::left ? each.left_reads : each.right_reads;
    reads.insert(reads.end(), more.begin(), more.end());
  }
  return reads;
}

keyed_condition split_condition::take_keyed() {
  std::vector<keyed_equality> keys;
  bool rest_may_raise = false;
  for (conjunct& each : conjuncts_) {
    if (each.key) {
      keys.push_back({std::make_unique<operators::equal>(std::move(each.left), std::move(each.right)), *each.key});
    } else {
      rest_may_raise = rest_may_raise || !each.knows_test;
    }
  }
  return {std::move(keys), take_unkeyed(), rest_may_raise};
}

operator_ptr split_condition::take_whole() {
  if (whole_ != nullptr) return std::move(whole_);
  for (conjunct& each : conjuncts_) each.key.reset();
  return make_and(take_unkeyed());
}

// As the operands of an AND are translated.
std::vector<operator_ptr> split_condition::take_unkeyed() {
  operators::chain_operands<operators::not_equal> operands(constants_);
  for (conjunct& each : conjuncts_) {
    if (each.key) continue;
    const auto* const inequality = std::get_if<Inequality>(each.plan);
    const auto member = inequality != nullptr ? operators::find_member(*inequality) : std::nullopt;
    if (member) {
      operands.add_test(*inequality, *member, std::move(each.left), std::move(each.right));
    } else if (const comparison_maker maker = maker_of(*each.plan)) {
      operands.add(maker(std::move(each.left), std::move(each.right)));
    } else {
      operands.add(std::move(each.left));
    }
  }
  return operands.finish();
}

}  // namespace physical_to_exec
