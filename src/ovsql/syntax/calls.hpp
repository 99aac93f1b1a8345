#ifndef OVSQL_SYNTAX_CALLS_HPP_
#define OVSQL_SYNTAX_CALLS_HPP_

#include "ovsql/syntax/expressions.hpp"

namespace ovsql::syntax {

// Reads city, f.origin.city, f.* or count(...).
draft parse_name_or_call(reader& in);

// Reads the arguments of a function whose name has been taken, and what follows them.
draft parse_call(reader& in, name function);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_CALLS_HPP_
