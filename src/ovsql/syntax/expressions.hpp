// Recognises expressions. What each throws: see parser.hpp.
#ifndef OVSQL_SYNTAX_EXPRESSIONS_HPP_
#define OVSQL_SYNTAX_EXPRESSIONS_HPP_

#include <cstddef>
#include <cstdint>
#include <utility>

#include "ovsql/syntax/reader.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

// How tightly operators bind, the loosest first. Comparisons, BETWEEN and IS DISTINCT FROM do not chain, NOT and signs
// stand before their operand, and all others are read from the left.
enum class level : std::uint8_t {
  none,
  disjunction,
  conjunction,
  negation,
  is,
  comparison,
  between,
  other,
  sum,
  product,
  sign,
  cast
};

constexpr level next_level(level of) { return static_cast<level>(static_cast<std::uint8_t>(of) + 1); }

// An expression that has been read, or a chain whose operands still lie on reader::lists, from `first` to the top. So
// a chain in brackets becomes part of the chain around it without being copied.
struct draft {
  expression* whole;  // null: a chain
  std::size_t first;
  chain_operator op;
  place at;
};

template <class T>
draft make_draft(reader& in, T is, place at) {
  return {in.trees.make(expression{std::move(is), at}), 0, chain_operator::conjunction, at};
}

// Ends a chain.
expression* settled(reader& in, const draft& of);

// Reads an expression whose operators bind at least that tightly.
draft parse_operand(reader& in, level lowest);

inline const expression* parse_expression(reader& in, level lowest = level::disjunction) {
  return settled(in, parse_operand(in, lowest));
}

inline expression_list parse_expressions(reader& in) {
  return in.take_list<const expression*>([](reader& from) { return parse_expression(from); });
}

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_EXPRESSIONS_HPP_
