#include "ov_sql_executor/expressions/property_read.hpp"

#include <variant>

#include "ov_sql_executor/database/column_read.hpp"

namespace ov::sql_executor::operators {

value_view property_read::lend(execution_context& context, value& room) const {
  const value_view object = object_.lend(context, room);
  if (std::holds_alternative<operator_library::NullValue>(object)) return object;
  const OV_OBJ_REF* reference = std::get_if<OV_OBJ_REF>(&object);
  if (reference == nullptr) throw std::bad_variant_access();
  constexpr std::uint64_t tag_bits = 0xFFFF;
  const OV_OBJ_REF tagged{reference->object_number, (reference->second_word & ~tag_bits) | reference_tag_};
  return db_util::read_column(type_, context.context_handle, tagged, column_, room);
}

}  // namespace ov::sql_executor::operators
