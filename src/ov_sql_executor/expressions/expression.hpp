// The scalar expressions of a physical plan. The host makes them, the library only reads them; the order of the
// alternatives and the layout of their fields are part of the interface.
#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_EXPRESSION_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_EXPRESSION_HPP_

#include <concepts>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "ov_sql_executor/expressions/column_ref.hpp"
#include "ov_sql_executor/values/type_identity.hpp"
#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/variants.hpp"

namespace physical_queryplan {

struct expression;

// The type of an operation's result: one tag per alternative of value, in the same order.
using result_type_tag = ov::sql_executor::one_of_each_type<meta_support::TypeIdentity>;

// What all operations hold. Plan refuses an operation with too few operands; surplus ones are ignored. The result type
// is what the host says it is, and nothing checks it. It selects the conversion of a Conditional, and it is the type of
// a result column where a computed reference names the operation (see column_type in plan.hpp).
//
// share/doc/ov_sql_executor/operations.md says for each operation what it yields of which operands, in which order it
// evaluates them and what it raises.
struct operation {
  result_type_tag result_type;
  std::vector<expression> operands;
};

struct Equality : operation {};        // 0, operands: left, right
struct Inequality : operation {};      // 1
struct AtMost : operation {};          // 2
struct Less : operation {};            // 3
struct Greater : operation {};         // 4
struct AtLeast : operation {};         // 5
struct And : operation {};             // 6
struct Or : operation {};              // 7
struct Not : operation {};             // 8, one operand
struct NullTest : operation {};        // 9, one operand
struct NotNullTest : operation {};     // 10, one operand
struct Sum : operation {};             // 11, left, right
struct Difference : operation {};      // 12
struct Negation : operation {};        // 13, one operand
struct Quotient : operation {};        // 14, left, right
struct Product : operation {};         // 15
struct PatternMatch : operation {};    // 16, text, pattern: LIKE, which ignores case; a backslash escapes
struct PrefixTest : operation {};      // 17, text, prefix
struct Conditional : operation {};     // 18, condition, then, else; the result type selects the conversion
struct ExclusiveOr : operation {};     // 19, left, right
struct Concatenation : operation {};   // 20, any number of texts
struct TypeTest : operation {};        // 21, object, set specifier
struct ObjectNumber : operation {};    // 22, one reference
struct ToBool : operation {};          // 23, one operand, like all conversions
struct ToUint64 : operation {};        // 24
struct ToInt64 : operation {};         // 25
struct ToDecimal : operation {};       // 26
struct ToFloat : operation {};         // 27
struct ToDouble : operation {};        // 28
struct ToText : operation {};          // 29
struct ToSetSpecifier : operation {};  // 30
struct PrefixPattern : operation {};   // 31, pattern

// The value of the statement's parameter of that number, as it is. Nothing checks that it is of alternative T. A
// reference among the parameters needs its whole second word where TypeTest looks at it; a property read sets the tag
// itself.
template <class T>
struct parameter {
  std::uint64_t number = 0;
};

// A value of the statement's text (0 to 10), or a parameter (11 to 21). Every evaluation of a reference in the text
// completes it: orv_context_lookup fills its second word, or its status is raised.
using literal =
    ov::sql_executor::joined_variant<ov::sql_executor::value, ov::sql_executor::one_of_each_type<parameter>>;
static_assert(std::variant_size_v<literal> == 22);

// Operations (0 to 31), the alternatives of column_ref (32 to 53) and literals (54).
using expression_variant = ov::sql_executor::joined_variant<
    std::variant<Equality, Inequality, AtMost, Less, Greater, AtLeast, And, Or, Not, NullTest, NotNullTest, Sum,
                 Difference, Negation, Quotient, Product, PatternMatch, PrefixTest, Conditional, ExclusiveOr,
                 Concatenation, TypeTest, ObjectNumber, ToBool, ToUint64, ToInt64, ToDecimal, ToFloat, ToDouble, ToText,
                 ToSetSpecifier, PrefixPattern>,
    column_ref, std::variant<literal>>;
static_assert(std::variant_size_v<expression_variant> == 55);

// May be nested to any depth: moving and destroying have no limit. plan.hpp says what Plan takes.
struct expression : expression_variant {
  using expression_variant::expression_variant;

  expression() = default;
  expression(const expression&) = default;
  expression(expression&&) = default;
  expression& operator=(const expression&) = default;
  expression& operator=(expression&&) = default;
  inline ~expression();
};

// Returns what an operation holds; null for any other expression and for a valueless one.
template <class Expression>
requires std::same_as<std::remove_const_t<Expression>, expression>
auto find_operation(Expression& any) {
  using found = std::conditional_t<std::is_const_v<Expression>, const operation*, operation*>;
  using variant = std::conditional_t<std::is_const_v<Expression>, const expression_variant&, expression_variant&>;
  if (any.valueless_by_exception()) return found();
  return std::visit(
      []<class Alternative>(Alternative& held) -> found {
        if constexpr (std::derived_from<Alternative, operation>) {
          return &held;
        } else {
          return nullptr;
        }
      },
      static_cast<variant>(any));
}

// Destroys nested operations one by one, without recursion and without memory of its own. The operands above those in
// hand wait as the operands of the last of them, whose own have been taken out.
inline expression::~expression() {
  const auto operands_of = [](expression& any) -> std::vector<expression>* {
    operation* const found = find_operation(any);
    return found != nullptr && !found->operands.empty() ? &found->operands : nullptr;
  };
  const auto take = [](std::vector<expression>& from) { return std::exchange(from, {}); };
  std::vector<expression>* const own = operands_of(*this);
  if (own == nullptr) return;
  std::vector<expression> in_hand = take(*own);
  std::vector<expression> above;
  while (true) {
    if (in_hand.empty()) {
      if (above.empty()) return;
      in_hand = take(above);
      if (auto* const waiting = operands_of(in_hand.back())) above = take(*waiting);
      in_hand.pop_back();
    } else if (auto* const below = operands_of(in_hand.back())) {
      std::vector<expression> next = take(*below);
      *below = take(above);
      above = take(in_hand);
      in_hand = std::move(next);
    } else {
      in_hand.pop_back();
    }
  }
}

}  // namespace physical_queryplan

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_EXPRESSION_HPP_
