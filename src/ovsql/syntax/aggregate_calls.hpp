#ifndef OVSQL_SYNTAX_AGGREGATE_CALLS_HPP_
#define OVSQL_SYNTAX_AGGREGATE_CALLS_HPP_

#include <span>
#include <string_view>

#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

// Whether a function's name, in lower case, is that of an aggregate.
bool is_aggregate(std::string_view function);

// Whether the result of a SELECT is computed from aggregates of its own: in its list or its ORDER BY. Does not look
// into subqueries, whose aggregates are theirs. Trees may be of any depth.
bool has_aggregates(const select& written, std::span<const order_item> order_by);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_AGGREGATE_CALLS_HPP_
