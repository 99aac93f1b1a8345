// Recognises the operators that are words, behind their left operand. `at` is its place.
#ifndef OVSQL_SYNTAX_PREDICATES_HPP_
#define OVSQL_SYNTAX_PREDICATES_HPP_

#include "ovsql/syntax/expressions.hpp"

namespace ovsql::syntax {

// Whether the word is BETWEEN, IN, LIKE or another one that may follow NOT.
bool is_negatable(keyword word);

// IS ..., ISNULL, NOTNULL, NOT NULL.
draft parse_is(reader& in, const expression* operand, place at);

// [NOT] BETWEEN, IN, LIKE.
draft parse_negatable(reader& in, const expression* operand, place at);

// Behind a comparison: ANY (...), SOME (...), ALL (...).
draft parse_quantified(reader& in, const expression* left, place at, binary_operator op);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_PREDICATES_HPP_
