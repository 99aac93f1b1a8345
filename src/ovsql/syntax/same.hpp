#ifndef OVSQL_SYNTAX_SAME_HPP_
#define OVSQL_SYNTAX_SAME_HPP_

#include <functional>

#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

// Whether two expressions are written alike, wherever they stand. Columns are compared by the function given. Subqueries
// are alike only where they are the same piece of text.
bool same(const expression& left, const expression& right,
          const std::function<bool(const expression&, const expression&)>& same_column);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_SAME_HPP_
