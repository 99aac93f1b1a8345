// Orders expressions by their structure, so that they can be members of a std::set. The order means nothing else:
// different expressions are never equivalent, and it may change between versions.
#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_EXPRESSION_ORDER_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_EXPRESSION_ORDER_HPP_

#include <algorithm>
#include <bit>
#include <compare>
#include <concepts>
#include <span>
#include <type_traits>
#include <variant>
#include <vector>

#include "ov_sql_executor/expressions/expression.hpp"

namespace physical_queryplan {

namespace structural {

template <class T>
requires std::integral<T> || std::same_as<T, Decimal> std::strong_ordering order(T left, T right) {
  return left <=> right;
}

// Compare bit patterns: a NaN equals only itself, and the two zeros differ.
inline std::strong_ordering order(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) <=> std::bit_cast<std::uint64_t>(right);
}
inline std::strong_ordering order(float left, float right) {
  return std::bit_cast<std::uint32_t>(left) <=> std::bit_cast<std::uint32_t>(right);
}

inline std::strong_ordering order(const db_string::tt_string& left, const db_string::tt_string& right) {
  const std::span a(left.data(), left.size());
  const std::span b(right.data(), right.size());
  return std::lexicographical_compare_three_way(a.begin(), a.end(), b.begin(), b.end());
}
inline std::strong_ordering order(const Binary& left, const Binary& right) { return left.bytes <=> right.bytes; }
inline std::strong_ordering order(const SetSpecifier& left, const SetSpecifier& right) {
  return left.units <=> right.units;
}
inline std::strong_ordering order(const NullValue&, const NullValue&) { return std::strong_ordering::equal; }

inline std::strong_ordering order(const OV_OBJ_REF& left, const OV_OBJ_REF& right) {
  if (const auto first = left.object_number <=> right.object_number; first != 0) return first;
  return left.second_word <=> right.second_word;
}

template <class T>
std::strong_ordering order(const parameter<T>& left, const parameter<T>& right) {
  return left.number <=> right.number;
}

template <class T>
std::strong_ordering order(const computed<T>& left, const computed<T>& right) {
  return left.id <=> right.id;
}

inline std::strong_ordering order(const std::vector<property_ref>& left, const std::vector<property_ref>& right) {
  return std::lexicographical_compare_three_way(
      left.begin(), left.end(), right.begin(), right.end(),
      [](const property_ref& x, const property_ref& y) { return order(x.object, y.object); });
}

inline std::strong_ordering order(const variable& left, const variable& right) {
  const variable* a = &left;
  const variable* b = &right;
  while (true) {
    if (const auto table = order(a->table, b->table); table != 0) return table;
    if (const auto id = a->id <=> b->id; id != 0) return id;
    const variable_origin* const a_origin = a->origin();
    const variable_origin* const b_origin = b->origin();
    if (a_origin == nullptr || b_origin == nullptr) return (a_origin != nullptr) <=> (b_origin != nullptr);
    if (const auto path = order(a_origin->path, b_origin->path); path != 0) return path;
    a = &a_origin->variable;
    b = &b_origin->variable;
  }
}

template <class T>
std::strong_ordering order(const property_column<T>& left, const property_column<T>& right) {
  const auto property = order(left.property.object, right.property.object);
  return property != 0 ? property : order(left.variable, right.variable);
}

// Leaves the operands out.
template <class Operation>
requires std::derived_from<Operation, operation> std::strong_ordering order(const Operation& left,
                                                                            const Operation& right) {
  return left.result_type.index() <=> right.result_type.index();
}

template <class... Alternatives>
std::strong_ordering order(const std::variant<Alternatives...>& left, const std::variant<Alternatives...>& right) {
  if (const auto index = left.index() <=> right.index(); index != 0 || left.valueless_by_exception()) return index;
  return std::visit([&right]<class T>(const T& held) { return structural::order(held, *std::get_if<T>(&right)); },
                    left);
}

// Operands that are still to be compared.
struct operand_pairs {
  std::span<const expression> left;
  std::span<const expression> right;
};

}  // namespace structural

// Compares operations by their operands, too, depth first. Expressions may be nested to any depth.
inline std::strong_ordering structural_order(const expression& left, const expression& right) {
  std::vector<structural::operand_pairs> pending;
  for (structural::operand_pairs next{{&left, 1}, {&right, 1}};;) {
    while (next.left.empty() || next.right.empty()) {
      if (const auto count = next.left.size() <=> next.right.size(); count != 0 || pending.empty()) return count;
      next = pending.back();
      pending.pop_back();
    }
    const expression& a = next.left.front();
    const expression& b = next.right.front();
    const auto order =
        structural::order(static_cast<const expression_variant&>(a), static_cast<const expression_variant&>(b));
    if (order != 0) return order;
    next = {next.left.subspan(1), next.right.subspan(1)};
    if (const operation* const inner = find_operation(a)) {
      pending.push_back(next);
      next = {inner->operands, find_operation(b)->operands};
    }
  }
}

}  // namespace physical_queryplan

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_EXPRESSION_ORDER_HPP_
