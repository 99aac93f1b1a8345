#ifndef OVSQL_SYNTAX_STATEMENTS_HPP_
#define OVSQL_SYNTAX_STATEMENTS_HPP_

#include "ovsql/syntax/reader.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

using statement_variant = decltype(statement::is);

// Reads a statement without its semicolon. What is not supported is skipped up to there.
statement_variant parse_statement(reader& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_STATEMENTS_HPP_
