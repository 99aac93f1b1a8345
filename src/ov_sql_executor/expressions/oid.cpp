#include "ov_sql_executor/expressions/oid.hpp"

#include <variant>

#include "ov_sql_executor/errors/db_exception.hpp"

namespace ov::sql_executor::operators {

value_view oid::lend(execution_context& context, value& room) const {
  const value_view object = operand_.lend(context, room);
  if (std::holds_alternative<operator_library::NullValue>(object)) return object;
  if (const auto* reference = std::get_if<OV_OBJ_REF>(&object)) return reference->object_number;
  if (std::holds_alternative<std::monostate>(object)) throw std::bad_variant_access();
  throw db_util::db_exception{db_util::type_error};
}

}  // namespace ov::sql_executor::operators
