#ifndef OVSQL_SYNTAX_SELECT_HPP_
#define OVSQL_SYNTAX_SELECT_HPP_

#include "ovsql/syntax/reader.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

// Reads SELECT up to HAVING.
select parse_select(reader& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_SELECT_HPP_
