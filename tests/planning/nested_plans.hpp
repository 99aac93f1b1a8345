// Plans of any depth, for each kind of operation and node one inside the other.
#ifndef TESTS_PLANNING_NESTED_PLANS_HPP_
#define TESTS_PLANNING_NESTED_PLANS_HPP_

#include <functional>
#include <utility>
#include <vector>

#include "ovhost/plans.hpp"

namespace tests {

using namespace physical_queryplan;             // NOLINT: the alternatives are what is tested
using namespace physical_queryplan::QueryPlan;  // NOLINT
using ovhost::plan;

// Parameters, so that the list of literals stays short: 0 is 1, 1 is true, 2 is false, 3 a text.
inline expression parameter_of(std::uint64_t number) { return literal(parameter<std::int64_t>{number}); }
inline expression one() { return parameter_of(0); }
inline computed<std::int64_t> column(std::uint32_t number) { return {{number, 0, 0, 0}}; }

template <class Operation, class... Operands>
expression make(Operands... operands) {
  Operation any;
  any.operands.reserve(sizeof...(operands));
  (any.operands.push_back(std::move(operands)), ...);
  return any;
}

using nesting = std::function<expression(expression)>;

template <class Operation>
expression unary(expression inner) {
  return make<Operation>(std::move(inner));
}
template <class Operation>
nesting left(std::uint64_t other = 0) {
  return [=](expression inner) { return make<Operation>(std::move(inner), parameter_of(other)); };
}
template <class Operation>
nesting right(std::uint64_t other = 0) {
  return [=](expression inner) { return make<Operation>(parameter_of(other), std::move(inner)); };
}
// The inner one is the condition (0) or one of the branches (1, 2).
inline nesting when(ovhost::value_kind kind, std::size_t place) {
  return [=](expression inner) {
    expression any = ovhost::when_as(kind, parameter_of(place == 1 ? 1 : 2), one(), one());
    std::get<Conditional>(any).operands[place] = std::move(inner);
    return any;
  };
}

inline expression either_and(expression inner) { return right<Or>(2)(right<And>(1)(std::move(inner))); }

using kind = ovhost::value_kind;
inline const std::pair<const char*, nesting> operations[] = {
    {"=, left", left<Equality>()},  {"LIKE, right", right<PatternMatch>(3)}, {"||, right", right<Concatenation>(3)},
    {"OR, AND", either_and},        {"*, right", right<Product>()},          {"IF, second", when(kind::int64, 2)},
    {"+, left", left<Sum>()},       {"to set", unary<ToSetSpecifier>},       {"IF, test", when(kind::boolean, 0)},
    {"to text", unary<ToText>},     {"number of", unary<ObjectNumber>},      {"IF, first", when(kind::text, 1)},
    {"IS NULL", unary<NullTest>},   {"prefix of", unary<PrefixPattern>},     {"NOT", unary<Not>},
    {"to int64", unary<ToInt64>},   {"type test", right<TypeTest>(1)},       {"-", unary<Negation>},
    {"<, right", right<Less>()},    {"LIKE, left", left<PatternMatch>(3)},   {"||, left", left<Concatenation>(3)},
    {"XOR", right<ExclusiveOr>(2)}, {"prefix test", right<PrefixTest>(3)}};

inline expression nest(const nesting& outer, int depth, expression any = one()) {
  for (int i = 0; i < depth; ++i) any = outer(std::move(any));
  return any;
}

inline plan generate(std::uint32_t number) { return ovhost::generate({one(), column(number)}); }
inline plan extend(std::uint32_t number, expression any, plan child) {
  std::vector<assignment> assignments(1);  // a list of initial values would be copied, level by level
  assignments[0] = {std::move(any), column(number)};
  return ovhost::extend(std::move(assignments), std::move(child));
}
// One row with columns 1 and 2.
inline plan two_columns() { return extend(2, one(), generate(1)); }

// The outer node, and its level: some nodes must differ from the one inside.
using plan_nesting = std::function<plan(plan, std::uint32_t)>;
using binary_node = std::function<plan(plan, plan)>;

inline plan_nesting left(const binary_node& join) {
  return [=](plan inner, std::uint32_t level) { return join(std::move(inner), generate(10 + level)); };
}
inline plan_nesting right(const binary_node& join) {
  return [=](plan inner, std::uint32_t level) { return join(generate(10 + level), std::move(inner)); };
}

inline plan order_by_one(plan inner, std::uint32_t) {
  return ovhost::order({ovhost::ascending(column(1))}, std::move(inner));
}
inline plan turn(plan inner, std::uint32_t level) {
  return ovhost::project({column(1 + level % 2), column(2 - level % 2)}, std::move(inner));
}
inline plan add_column(plan inner, std::uint32_t level) { return extend(10 + level, one(), std::move(inner)); }
inline plan group_by_both(plan inner, std::uint32_t) {
  return ovhost::group({}, {{column(1), column(1)}, {column(2), column(2)}}, std::move(inner));
}
inline plan aggregate_both(plan inner, std::uint32_t) {
  const aggregation first{{}, {column(1)}, column(1)};
  const aggregation second{{}, {column(2)}, column(2)};
  return ovhost::group({Maximum{first}, Minimum{second}}, {}, std::move(inner));
}
inline plan pair(plan left, plan right) { return ovhost::full_join(std::nullopt, std::move(left), std::move(right)); }
inline plan match(plan left, plan right) {
  return ovhost::full_join(parameter_of(1), std::move(left), std::move(right));
}

inline const std::pair<const char*, plan_nesting> nodes[] = {
    {"filter", [](plan inner, std::uint32_t) { return ovhost::filter(parameter_of(1), std::move(inner)); }},
    {"projection", turn},
    {"extension", add_column},
    {"groups", group_by_both},
    {"aggregates", aggregate_both},
    {"order", order_by_one},
    {"limit", [](plan inner, std::uint32_t) { return ovhost::limit(one(), {}, std::move(inner)); }},
    {"union, left", [](plan inner, std::uint32_t) { return ovhost::unite(std::move(inner), two_columns()); }},
    {"union, right", [](plan inner, std::uint32_t) { return ovhost::unite(two_columns(), std::move(inner)); }},
    {"join, left", left(ovhost::join)},
    {"join, right", right(ovhost::join)},
    {"left join, left", left(ovhost::left_join)},
    {"left join, right", right(ovhost::left_join)},
    {"full join, left", left(pair)},
    {"full join, right", right(pair)},
    {"full join on condition", right(match)}};

inline plan nest(const plan_nesting& outer, int depth, plan any = two_columns()) {
  for (int i = 0; i < depth; ++i) any = outer(std::move(any), static_cast<std::uint32_t>(i));
  return any;
}

inline plan select(plan any) { return ovhost::project({column(1)}, std::move(any)); }
inline plan select(expression any) { return ovhost::project({column(3)}, extend(3, std::move(any), generate(1))); }

}  // namespace tests

#endif  // TESTS_PLANNING_NESTED_PLANS_HPP_
