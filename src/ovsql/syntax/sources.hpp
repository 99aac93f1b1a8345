#ifndef OVSQL_SYNTAX_SOURCES_HPP_
#define OVSQL_SYNTAX_SOURCES_HPP_

#include "ovsql/syntax/reader.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

// Reads one item of FROM: a table or a query, with all that is joined to it.
const source* parse_source(reader& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_SOURCES_HPP_
