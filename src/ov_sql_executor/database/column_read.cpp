#include "ov_sql_executor/database/column_read.hpp"

#include <variant>

#include "ov_sql_executor/database/core_block.hpp"
#include "ov_sql_executor/database/obj_ref.hpp"
#include "ov_sql_executor/database/status.hpp"
#include "ovcoredb/ovcoredb.h"

namespace db_util {

namespace {

using operator_library::Decimal;
using operator_library::NullValue;
using operator_library::SetSpecifier;
using ov::sql_executor::binary_view;
using ov::sql_executor::text_view;
using ov::sql_executor::type_code;
using ov::sql_executor::value;
using ov::sql_executor::value_view;

// Calls a getter and turns what it wrote into the view of an alternative.
template <class Raw, class Convert>
value_view read(std::uint32_t (*getter)(std::uint64_t, std::uint64_t, std::uint64_t, std::uint32_t, Raw*),
                std::uint64_t context, const OV_OBJ_REF& object, std::uint32_t column, Convert convert) {
  Raw raw{};
  if (!check_has_value(getter(context, object.object_number, object.second_word, column, &raw))) return NullValue{};
  return convert(raw);
}

std::span<const std::uint8_t> bytes_of(const ORV_BYTES& lent) {
  return {lent.bytes, static_cast<std::size_t>(lent.length)};
}

value_view read_set_specifier(std::uint64_t context, const OV_OBJ_REF& object, value& room) {
  const std::uint8_t* block = nullptr;
  if (!check_has_value(orv_context_get_setspec(context, object.object_number, object.second_word, &block))) {
    return NullValue{};
  }
  return std::u16string_view(room.emplace<SetSpecifier>(SetSpecifier{units_of_block(block)}).units);
}

constexpr auto as_it_is = [](auto raw) -> value_view { return raw; };

}  // namespace

value_view read_column(type_code type, std::uint64_t context, OV_OBJ_REF object, std::uint32_t column, value& room) {
  switch (type) {
    case type_code::uint64:
      return read(orv_context_get_ulong, context, object, column, as_it_is);
    case type_code::int64:
      return read(orv_context_get_long, context, object, column, as_it_is);
    case type_code::decimal:
      return read(orv_context_get_decimal, context, object, column,
                  [](std::int64_t raw) -> value_view { return Decimal{raw}; });
    case type_code::float32:
      return read(orv_context_get_float, context, object, column, as_it_is);
    case type_code::float64:
      return read(orv_context_get_double, context, object, column, as_it_is);
    case type_code::tt_string:
      return read(orv_context_get_binary, context, object, column,
                  [](const ORV_BYTES& lent) -> value_view { return text_view{bytes_of(lent)}; });
    case type_code::binary:
      return read(orv_context_get_binary, context, object, column,
                  [](const ORV_BYTES& lent) -> value_view { return binary_view{bytes_of(lent)}; });
    case type_code::obj_ref:
      return read(orv_context_get_reference, context, object, column,
                  [](const ORV_REFERENCE_VALUE& raw) -> value_view { return to_obj_ref(raw); });
    case type_code::set_specifier:
      return read_set_specifier(context, object, room);
    case type_code::boolean:
      return read(orv_meta_get_bool, context, object, column, [](std::uint64_t raw) -> value_view { return raw != 0; });
  }
  throw db_exception{type_error};
}

}  // namespace db_util
