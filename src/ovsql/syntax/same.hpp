#ifndef OVSQL_SYNTAX_SAME_HPP_
#define OVSQL_SYNTAX_SAME_HPP_

#include <functional>
#include <string_view>

#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

// Whether two expressions of a text are written alike, wherever they stand. Columns are compared by the function given.
// Subqueries are alike where their texts are, byte by byte.
bool same(const expression& left, const expression& right, std::string_view text,
          const std::function<bool(const expression&, const expression&)>& same_column);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_SAME_HPP_
