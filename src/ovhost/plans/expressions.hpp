// Makes expressions of a physical plan in one readable line each: eq(a["state"], text(u"TX")). Each function makes the
// alternative that its name or comment says, and fills in its result type. The executor decides what the alternatives
// do and which operands they accept. Texts and names given as std::string_view are UTF-8; others throw
// std::invalid_argument.
#ifndef OVHOST_PLANS_EXPRESSIONS_HPP_
#define OVHOST_PLANS_EXPRESSIONS_HPP_

#include <concepts>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ov_sql_executor/expressions/expression.hpp"
#include "ovhost/values/export.hpp"
#include "ovhost/values/value_kind.hpp"

namespace ovhost {

using physical_queryplan::expression;

// Returns the type of an expression's values, as the plan states it.
OVHOST_API value_kind kind_of(const expression& of);

// Returns the type to which arithmetic brings two numbers. Returns the other type where one is null, and otherwise the
// left one.
OVHOST_API value_kind common_kind(value_kind left, value_kind right);

// ---- Literals and parameters

OVHOST_API expression text(std::u16string_view units);
OVHOST_API expression text(std::string_view utf8);
OVHOST_API expression decimal(std::string_view digits);  // "12.5"; std::invalid_argument if it is none
OVHOST_API expression null();
OVHOST_API expression constant(ov::sql_executor::value of);

// Makes a literal of a number, bool, Decimal, Binary, reference or set specifier. Signed integers become int64,
// unsigned ones uint64.
template <class T>
expression lit(T of) {
  if constexpr (std::integral<T> && !std::same_as<T, bool>) {
    using wide = std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>;
    return constant(ov::sql_executor::value(std::in_place_type<wide>, of));
  } else {
    return constant(ov::sql_executor::value(std::in_place_type<T>, std::move(of)));
  }
}

// Stands for the statement's parameter of that number, from 0.
OVHOST_API expression parameter(std::uint64_t number, value_kind kind);

// ---- Comparisons, with bool results

OVHOST_API expression eq(expression left, expression right);
OVHOST_API expression ne(expression left, expression right);
OVHOST_API expression le(expression left, expression right);
OVHOST_API expression lt(expression left, expression right);
OVHOST_API expression gt(expression left, expression right);
OVHOST_API expression ge(expression left, expression right);

// ---- Logic, with bool results

OVHOST_API expression both(expression left, expression right);
OVHOST_API expression either(expression left, expression right);
OVHOST_API expression exclusive(expression left, expression right);
OVHOST_API expression negated(expression operand);
OVHOST_API expression is_null(expression operand);
OVHOST_API expression is_not_null(expression operand);
OVHOST_API expression is_a(expression object, expression set_specifier);  // type test
OVHOST_API expression is_a(expression object, std::string_view type);     // by the type's name, "Shop.Order"

// ---- Arithmetic, with the common type of the operands; two uint64 give an int64

OVHOST_API expression add(expression left, expression right);
OVHOST_API expression sub(expression left, expression right);
OVHOST_API expression mul(expression left, expression right);
OVHOST_API expression div(expression left, expression right);
OVHOST_API expression neg(expression operand);

// ---- Text

OVHOST_API expression like(expression text, expression pattern);
OVHOST_API expression starts_with(expression text, expression prefix);
OVHOST_API expression like_prefix(expression pattern);  // the text before the first wildcard
OVHOST_API expression concat(std::vector<expression> texts);

// ---- Others

// Gives the then value where the condition is true, else the other, converted to the common type of the two.
OVHOST_API expression when(expression condition, expression then_value, expression else_value);
OVHOST_API expression when_as(value_kind kind, expression condition, expression then_value, expression else_value);

OVHOST_API expression oid(expression reference);  // the object's number

// Converts to bool, uint64, int64, decimal, float, double, text or set specifier. Throws std::invalid_argument for the
// other kinds, to which nothing converts.
OVHOST_API expression to(value_kind kind, expression operand);

}  // namespace ovhost

#endif  // OVHOST_PLANS_EXPRESSIONS_HPP_
