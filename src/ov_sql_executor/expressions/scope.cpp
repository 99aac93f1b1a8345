#include "ov_sql_executor/expressions/scope.hpp"

#include <algorithm>
#include <concepts>
#include <variant>

#include "ov_sql_executor/errors/complete.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ov_sql_executor/expressions/constants.hpp"

namespace ov::sql_executor {

using physical_queryplan::column_ref;
using physical_queryplan::expression;

std::optional<std::int16_t> find_in_scope(const scope& columns, const column_ref& column) {
  const auto found = std::find(columns.begin(), columns.end(), column);
  if (found == columns.end()) return std::nullopt;
  return to_position(static_cast<std::uint64_t>(found - columns.begin()));
}

scope join_scopes(const scope& outer, const scope& inner) {
  scope joined;
  joined.reserve(outer.size() + inner.size());
  joined.insert(joined.end(), outer.begin(), outer.end());
  joined.insert(joined.end(), inner.begin(), inner.end());
  return joined;
}

column_ref to_column_ref(const expression& item) {
  return std::visit(
      []<class Alternative>(const Alternative& alternative) -> column_ref {
        // A literal, too, would convert to no column; an operation holds operands, not a column.
        if constexpr (std::constructible_from<column_ref, std::in_place_type_t<Alternative>, const Alternative&>) {
          return alternative;
        } else {
          error_handling::raise_error(error_handling::internal_error, error_handling::no_detail,
                                      L"Internal error: expression is not a variable");
        }
      },
      error_handling::complete(item));
}

expression to_expression(const column_ref& column) {
  return std::visit([](const auto& alternative) -> expression { return alternative; }, column);
}

}  // namespace ov::sql_executor
