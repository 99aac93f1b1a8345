#ifndef OVSQL_SYNTAX_DEFINITIONS_HPP_
#define OVSQL_SYNTAX_DEFINITIONS_HPP_

#include "ovsql/syntax/statements.hpp"

namespace ovsql::syntax {

// CREATE TABLE, INDEX or VIEW.
statement_variant parse_create(reader& in);

// DROP TABLE, INDEX or VIEW.
statement_variant parse_drop(reader& in);

// The body of CREATE TABLE, from behind TABLE.
create_table parse_create_table(reader& in);

// IF NOT EXISTS
bool accept_if_not_exists(reader& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_DEFINITIONS_HPP_
