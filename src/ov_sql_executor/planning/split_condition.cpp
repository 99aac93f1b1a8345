#include "ov_sql_executor/planning/split_condition.hpp"

#include <algorithm>
#include <utility>
#include <variant>

#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/expression_translation.hpp"
#include "ov_sql_executor/expressions/logical.hpp"
#include "ov_sql_executor/expressions/operand_chain.hpp"

namespace physical_to_exec {

namespace {

using ov::sql_executor::keyed_condition;
using ov::sql_executor::translate_expression;
using ov::sql_executor::value;
using ov::sql_executor::visible_columns;
using physical_queryplan::And;
using physical_queryplan::Equality;
using physical_queryplan::expression;
namespace operators = ov::sql_executor::operators;

// The operand that a chain of ANDs evaluates first.
const expression& first_of(const expression& any) {
  const expression* first = &any;
  while (const auto* const chain = std::get_if<And>(first)) {
    if (chain->operands.empty()) break;
    first = &chain->operands.front();
  }
  return *first;
}

}  // namespace

bool position_range::contains_any(const read_list& reads) const {
  return std::ranges::any_of(reads, [this](std::int16_t each) {
    const auto position = static_cast<std::size_t>(each);
    return position >= begin && position < end;
  });
}

split_condition::split_condition(const expression& condition, std::vector<value>& constants,
                                 const visible_columns& columns, use purpose) {
  const auto read = [&] {
    read_list reads = columns.take_reads();
    reads_.insert(reads_.end(), reads.begin(), reads.end());
    return reads;
  };
  const auto* const equality = std::get_if<Equality>(&first_of(condition));
  if (purpose == use::as_a_whole || equality == nullptr || equality->operands.size() < 2) {
    whole_ = translate_expression(condition, constants, columns);
    read();
    return;
  }
  const auto add = [&](const expression& each) {
    if (left_ != nullptr) {
      rest_.push_back(translate_expression(each, constants, columns));
      read();
      return;
    }
    left_ = translate_expression(equality->operands[0], constants, columns);
    left_reads_ = read();
    right_ = translate_expression(equality->operands[1], constants, columns);
    right_reads_ = read();
  };
  if (const auto* const chain = std::get_if<And>(&condition)) {
    ov::sql_executor::visit_chain(*chain, add);
  } else {
    add(condition);
  }
}

bool split_condition::find_key(position_range kept_row, position_range changing) {
  if (whole_ != nullptr) return false;
  const auto is_key = [&](const read_list& reads) {
    return kept_row.contains_any(reads) && !changing.contains_any(reads);
  };
  key_is_left_ = is_key(left_reads_) && !kept_row.contains_any(right_reads_);
  return key_is_left_ || (is_key(right_reads_) && !kept_row.contains_any(left_reads_));
}

keyed_condition split_condition::take_keyed() {
  if (key_is_left_) {
    return {std::move(left_), std::move(right_), keyed_condition::key_side::left, std::move(rest_)};
  }
  return {std::move(right_), std::move(left_), keyed_condition::key_side::right, std::move(rest_)};
}

std::unique_ptr<operators::operator_base> split_condition::take_whole() {
  if (whole_ != nullptr) return std::move(whole_);
  auto equality = std::make_unique<operators::equal>(std::move(left_), std::move(right_));
  if (rest_.empty()) return equality;
  if (rest_.size() == 1)
    return std::make_unique<operators::logical_and>(operator_ptr(std::move(equality)), std::move(rest_[0]));
  rest_.insert(rest_.begin(), std::move(equality));
  return std::make_unique<operators::all_of>(std::move(rest_));
}

}  // namespace physical_to_exec
