// Recognises queries. What each throws: see parser.hpp.
#ifndef OVSQL_SYNTAX_QUERIES_HPP_
#define OVSQL_SYNTAX_QUERIES_HPP_

#include "ovsql/syntax/reader.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

// Whether a query without brackets begins here.
bool begins_query(const reader& in);

// Whether something follows that may only follow a query: UNION, ORDER BY, LIMIT, ...
bool continues_query(const reader& in);

const query* parse_query(reader& in);

// Reads what follows a query that stood in brackets, and returns the whole.
const query* continue_query(reader& in, const query& first);

// (SELECT ...)
const query* parse_query_in_brackets(reader& in);

// A table's name, which stands for all of it.
const query* query_of_table(reader& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_QUERIES_HPP_
