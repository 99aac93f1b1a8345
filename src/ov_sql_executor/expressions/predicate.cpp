#include "ov_sql_executor/expressions/predicate.hpp"

#include <variant>

#include "ov_sql_executor/errors/db_exception.hpp"

namespace ov::sql_executor::operators {

bool holds(const operand& condition, execution_context& context) {
  value room;
  const value_view result = condition.lend(context, room);
  if (const bool* truth = std::get_if<bool>(&result)) return *truth;
  if (std::holds_alternative<operator_library::NullValue>(result)) return false;
  if (std::holds_alternative<std::monostate>(result)) throw std::bad_variant_access();
  throw db_util::db_exception{db_util::type_error};
}

}  // namespace ov::sql_executor::operators
