#include "ov_sql_executor/expressions/chain_operands.hpp"

#include <concepts>
#include <utility>
#include <variant>

#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/expression_order.hpp"
#include "ov_sql_executor/expressions/in_list.hpp"

namespace ov::sql_executor::operators {

namespace {

using physical_queryplan::expression;
using physical_queryplan::literal;

// Fewer comparisons are quicker than a look into a set.
constexpr std::size_t fewest_members = 5;

// Whether a literal becomes a value_from_context.
bool reads_context(const expression& any) {
  const auto* const held = std::get_if<literal>(&any);
  return held != nullptr && !std::holds_alternative<OV_OBJ_REF>(*held);
}

bool is_constant(const expression& any) {
  return reads_context(any) && std::get<literal>(any).index() < std::variant_size_v<value>;
}

}  // namespace

std::optional<std::size_t> find_member(const physical_queryplan::operation& comparison) {
  const std::vector<expression>& operands = comparison.operands;
  if (operands.size() < 2) return std::nullopt;
  if (reads_context(operands[1])) return 1;
  return is_constant(operands[0]) ? std::optional<std::size_t>(0) : std::nullopt;
}

template <class Comparing>
void chain_operands<Comparing>::add(operator_ptr any) {
  close_run();
  operands_.push_back(std::move(any));
}

template <class Comparing>
void chain_operands<Comparing>::add_test(const physical_queryplan::operation& comparison, std::size_t member,
                                         operator_ptr left, operator_ptr right) {
  const expression& tested = comparison.operands[1 - member];
  if (tested_ == nullptr || structural_order(*tested_, tested) != 0) close_run();
  tested_ = &tested;
  run_.push_back({{std::move(left), std::move(right)}, member});
}

template <class Comparing>
auto chain_operands<Comparing>::finish() -> std::vector<operator_ptr> {
  close_run();
  return std::move(operands_);
}

template <class Comparing>
void chain_operands<Comparing>::close_run() {
  if (run_.size() >= fewest_members) {
    operands_.push_back(make_list());
  } else {
    for (auto& [sides, member] : run_) {
      operands_.push_back(std::make_unique<Comparing>(std::move(sides[0]), std::move(sides[1])));
    }
  }
  run_.clear();
  tested_ = nullptr;
}

template <class Comparing>
auto chain_operands<Comparing>::make_list() -> operator_ptr {
  list_members members;
  members.reserve(run_.size());
  for (auto& [sides, member] : run_) {
    members.emplace_back(static_cast<value_from_context*>(sides[member].release()));
  }
  constexpr auto which = std::same_as<Comparing, equal> ? in_list::kind::in : in_list::kind::not_in;
  operator_ptr tested = std::move(run_.front().sides[1 - run_.front().member]);
  return std::make_unique<in_list>(which, std::move(tested), std::move(members), constants_);
}

template class chain_operands<equal>;
template class chain_operands<not_equal>;

}  // namespace ov::sql_executor::operators
