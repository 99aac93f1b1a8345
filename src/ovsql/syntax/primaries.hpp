#ifndef OVSQL_SYNTAX_PRIMARIES_HPP_
#define OVSQL_SYNTAX_PRIMARIES_HPP_

#include "ovsql/syntax/expressions.hpp"

namespace ovsql::syntax {

// Reads what an expression begins with: a literal, a parameter, a column, a call, CASE, CAST, something in brackets, a
// subquery, or NOT or a sign with its operand.
draft parse_primary(reader& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_PRIMARIES_HPP_
