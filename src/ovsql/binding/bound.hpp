#ifndef OVSQL_BINDING_BOUND_HPP_
#define OVSQL_BINDING_BOUND_HPP_

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "ov_sql_executor/expressions/expression.hpp"
#include "ovhost/values/value_kind.hpp"
#include "ovsql/binding/types.hpp"
#include "ovsql/catalog/catalog.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql {

using physical_queryplan::expression;

// An expression with its type.
struct bound {
  expression value;
  value_kind kind = value_kind::null;  // null: nothing says it, as of NULL and of parameters
  syntax::place at{};
  const table* target = nullptr;  // of a reference: the table it refers to, if one is known
  std::string_view digits{};      // of a number literal, with its sign: it takes the type it is used with
  std::uint32_t size = 1;         // how many operations and operands it has
};

// ---- What operators accept and yield. All throw error of kind type, with the place of what does not fit.

// A number for arithmetic: truth values become integers.
bound as_number(bound of, std::string_view use);

// A truth value for conditions: a number is true unless it is 0.
bound as_truth(bound of, std::string_view use);

bound as_text(bound of, std::string_view use);

// Requires that values of both are compared with each other, and gives number literals the type of the other side.
void match(bound& left, bound& right, syntax::place at);

// Brings alternatives (of CASE, UNION, COALESCE) to one type.
value_kind common_kind(const bound& left, const bound& right, syntax::place at);
value_kind common_kind(value_kind left, value_kind right, syntax::place at);

// The expression as values of a kind, to which its own promotes.
expression promoted(bound of, value_kind kind);

bound compare(syntax::binary_operator op, bound left, bound right, syntax::place at);
bound negate(bound of);  // NOT

// NULL of a type.
expression typed_null(value_kind kind);

// Joins operands by AND, OR or ||.
expression all_of(std::vector<expression> operands);
expression any_of(std::vector<expression> operands);

// A number literal's value, "-2.50" or "1e3", as the narrowest of int64, uint64, decimal and double that has it.
bound number(std::string_view digits, syntax::place at);

}  // namespace ovsql

#endif  // OVSQL_BINDING_BOUND_HPP_
