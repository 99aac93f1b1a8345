// Plans of any depth, for each kind of operation and node one inside the other.
#ifndef TESTS_PLANNING_NESTED_PLANS_HPP_
#define TESTS_PLANNING_NESTED_PLANS_HPP_

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ov_sql_executor/planning/query_plan.hpp"

namespace tests {

using namespace physical_queryplan;             // NOLINT: the alternatives are what is tested
using namespace physical_queryplan::QueryPlan;  // NOLINT
using plan = PredicateVariant;

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
nesting unary() {
  return [](expression inner) { return make<Operation>(std::move(inner)); };
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
template <class Result>
nesting conditional(std::size_t place) {
  return [=](expression inner) {
    Conditional any{{meta_support::TypeIdentity<Result>(), {}}};
    for (std::size_t i = 0; i < 3; ++i) any.operands.push_back(parameter_of(i == 0 ? place == 1 ? 1 : 2 : 0));
    any.operands[place] = std::move(inner);
    return expression(std::move(any));
  };
}

inline const std::vector<std::pair<const char*, nesting>>& operations() {
  static const std::vector<std::pair<const char*, nesting>> all = {
      {"=, left", left<Equality>()},
      {"<, right", right<Less>()},
      {"NOT", unary<Not>()},
      {"OR and AND", [](expression inner) { return right<Or>(2)(right<And>(1)(std::move(inner))); }},
      {"XOR", right<ExclusiveOr>(2)},
      {"IS NULL", unary<NullTest>()},
      {"+, left", left<Sum>()},
      {"*, right", right<Product>()},
      {"-", unary<Negation>()},
      {"LIKE, left", left<PatternMatch>(3)},
      {"LIKE, right", right<PatternMatch>(3)},
      {"prefix test", right<PrefixTest>(3)},
      {"||, left", left<Concatenation>(3)},
      {"||, right", right<Concatenation>(3)},
      {"type test", right<TypeTest>(1)},
      {"number of", unary<ObjectNumber>()},
      {"to int64", unary<ToInt64>()},
      {"to text", unary<ToText>()},
      {"to set specifier", unary<ToSetSpecifier>()},
      {"prefix of", unary<PrefixPattern>()},
      {"IF, condition", conditional<bool>(0)},
      {"IF, first branch", conditional<db_string::tt_string>(1)},
      {"IF, second branch", conditional<std::int64_t>(2)}};
  return all;
}

inline expression nest(const nesting& outer, int depth, expression any = one()) {
  for (int i = 0; i < depth; ++i) any = outer(std::move(any));
  return any;
}

inline child_ptr own(plan any) { return std::make_unique<plan>(std::move(any)); }
inline plan generate(std::uint32_t number) { return GenerativeAssignment{one(), column(number)}; }
inline plan extend(std::uint32_t number, expression any, plan child) {
  std::vector<assignment> assignments;
  assignments.push_back({std::move(any), column(number)});
  return Extension{std::move(assignments), own(std::move(child))};
}
inline plan project(std::vector<expression> items, plan child) {
  return Projection{std::move(items), own(std::move(child))};
}
// One row with columns 1 and 2.
inline plan two_columns() { return extend(2, one(), generate(1)); }

// The outer node, and its level: some nodes must differ from the one inside.
using plan_nesting = std::function<plan(plan, std::uint32_t)>;

template <class Join>
plan_nesting join_left() {
  return [](plan inner, std::uint32_t level) {
    Join any;
    any.left = own(std::move(inner));
    any.right = own(generate(10 + level));
    return plan(std::move(any));
  };
}
template <class Join>
plan_nesting join_right() {
  return [](plan inner, std::uint32_t level) {
    Join any;
    any.left = own(generate(10 + level));
    any.right = own(std::move(inner));
    return plan(std::move(any));
  };
}

inline const std::vector<std::pair<const char*, plan_nesting>>& nodes() {
  static const std::vector<std::pair<const char*, plan_nesting>> all = {
      {"filter",
       [](plan inner, std::uint32_t) {
         return Filter{parameter_of(1), own(std::move(inner))};
       }},
      {"projection",
       [](plan inner, std::uint32_t level) {
         return project({column(1 + level % 2), column(2 - level % 2)}, std::move(inner));
       }},
      {"extension", [](plan inner, std::uint32_t level) { return extend(10 + level, one(), std::move(inner)); }},
      {"groups",
       [](plan inner, std::uint32_t) {
         return Aggregation{{}, {{column(1), column(1)}, {column(2), column(2)}}, own(std::move(inner))};
       }},
      {"aggregates",
       [](plan inner, std::uint32_t) {
         const aggregation first{{}, {column(1)}, column(1)};
         const aggregation second{{}, {column(2)}, column(2)};
         return Aggregation{{Maximum{first}, Minimum{second}}, {}, own(std::move(inner))};
       }},
      {"order",
       [](plan inner, std::uint32_t) {
         return OrderBy{{{true, column(1)}}, own(std::move(inner))};
       }},
      {"limit",
       [](plan inner, std::uint32_t) {
         return LimitOffset{one(), {}, own(std::move(inner))};
       }},
      {"union, left",
       [](plan inner, std::uint32_t) {
         return Union{own(std::move(inner)), own(two_columns())};
       }},
      {"union, right",
       [](plan inner, std::uint32_t) {
         return Union{own(two_columns()), own(std::move(inner))};
       }},
      {"join, left", join_left<NestedLoopJoin>()},
      {"join, right", join_right<NestedLoopJoin>()},
      {"left join, left", join_left<LeftJoin>()},
      {"left join, right", join_right<LeftJoin>()},
      {"full join, left", join_left<FullJoin>()},
      {"full join, right", join_right<FullJoin>()},
      {"full join on condition", [](plan inner, std::uint32_t level) {
         return FullJoin{parameter_of(1), own(generate(10 + level)), own(std::move(inner))};
       }}};
  return all;
}

inline plan nest(const plan_nesting& outer, int depth, plan any = two_columns()) {
  for (int i = 0; i < depth; ++i) any = outer(std::move(any), static_cast<std::uint32_t>(i));
  return any;
}

inline plan select(plan any) { return project({column(1)}, std::move(any)); }
inline plan select(expression any) { return project({column(3)}, extend(3, std::move(any), generate(1))); }

}  // namespace tests

#endif  // TESTS_PLANNING_NESTED_PLANS_HPP_
