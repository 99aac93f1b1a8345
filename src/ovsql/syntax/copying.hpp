#ifndef OVSQL_SYNTAX_COPYING_HPP_
#define OVSQL_SYNTAX_COPYING_HPP_

#include "ovsql/syntax/statements.hpp"

namespace ovsql::syntax {

// COPY table FROM 'file', with its options in brackets or without them.
copy_from parse_copy(reader& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_COPYING_HPP_
