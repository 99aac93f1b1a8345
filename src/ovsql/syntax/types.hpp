#ifndef OVSQL_SYNTAX_TYPES_HPP_
#define OVSQL_SYNTAX_TYPES_HPP_

#include "ovsql/syntax/reader.hpp"

namespace ovsql::syntax {

// Reads the name of a type: all words up to a reserved one, with numbers in brackets.
type_name parse_type(reader& in);

// Reads the name of a type behind "::", where an alias may follow: one word, or several that belong together, as
// double precision.
type_name parse_short_type(reader& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_TYPES_HPP_
