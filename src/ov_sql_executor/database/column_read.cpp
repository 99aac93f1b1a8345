#include "ov_sql_executor/database/column_read.hpp"

#include <type_traits>
#include <utility>
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
using ov::sql_executor::append_from_view;
using ov::sql_executor::binary_view;
using ov::sql_executor::text_view;
using ov::sql_executor::type_code;
using ov::sql_executor::value;
using ov::sql_executor::value_view;

// Calls a getter and hands what it wrote to take_value, as an alternative of value_view.
template <class Raw, class Convert, class Take>
decltype(auto) take(std::uint32_t (*getter)(std::uint64_t, std::uint64_t, std::uint64_t, std::uint32_t, Raw*),
                    std::uint64_t context, const OV_OBJ_REF& object, std::uint32_t column, Convert convert,
                    Take&& take_value) {
  Raw raw{};
  if (!check_has_value(getter(context, object.object_number, object.second_word, column, &raw))) {
    return take_value(NullValue{});
  }
  return take_value(convert(raw));
}

template <class Take>
decltype(auto) take_set_specifier(std::uint64_t context, const OV_OBJ_REF& object, Take&& take_value) {
  const std::uint8_t* block = nullptr;
  if (!check_has_value(orv_context_get_setspec(context, object.object_number, object.second_word, &block))) {
    return take_value(NullValue{});
  }
  return take_value(SetSpecifier{units_of_block(block)});
}

std::span<const std::uint8_t> bytes_of(const ORV_BYTES& lent) {
  return {lent.bytes, static_cast<std::size_t>(lent.length)};
}

// Calls take_value once with the column's value: an alternative of value_view, or a set specifier.
template <class Take>
decltype(auto) take_column(type_code type, std::uint64_t context, const OV_OBJ_REF& object, std::uint32_t column,
                           Take&& take_value) {
  const auto as_it_is = [](auto raw) { return raw; };
  switch (type) {
    case type_code::uint64:
      return take(orv_context_get_ulong, context, object, column, as_it_is, take_value);
    case type_code::int64:
      return take(orv_context_get_long, context, object, column, as_it_is, take_value);
    case type_code::decimal:
      return take(
          orv_context_get_decimal, context, object, column, [](std::int64_t raw) { return Decimal{raw}; }, take_value);
    case type_code::float32:
      return take(orv_context_get_float, context, object, column, as_it_is, take_value);
    case type_code::float64:
      return take(orv_context_get_double, context, object, column, as_it_is, take_value);
    case type_code::tt_string:
      return take(
          orv_context_get_binary, context, object, column,
          [](const ORV_BYTES& lent) { return text_view{bytes_of(lent)}; }, take_value);
    case type_code::binary:
      return take(
          orv_context_get_binary, context, object, column,
          [](const ORV_BYTES& lent) { return binary_view{bytes_of(lent)}; }, take_value);
    case type_code::obj_ref:
      return take(orv_context_get_reference, context, object, column, to_obj_ref, take_value);
    case type_code::set_specifier:
      return take_set_specifier(context, object, take_value);
    case type_code::boolean:
      return take(
          orv_meta_get_bool, context, object, column, [](std::uint64_t raw) { return raw != 0; }, take_value);
  }
  throw db_exception{type_error};
}

}  // namespace

value_view read_column(type_code type, std::uint64_t context, OV_OBJ_REF object, std::uint32_t column, value& scratch) {
  return take_column(type, context, object, column, [&scratch]<class Read>(Read&& read) -> value_view {
    if constexpr (std::is_same_v<std::remove_cvref_t<Read>, SetSpecifier>) {
      return std::u16string_view(scratch.emplace<SetSpecifier>(std::forward<Read>(read)).units);
    } else {
      return read;
    }
  });
}

void append_column(type_code type, std::uint64_t context, OV_OBJ_REF object, std::uint32_t column,
                   std::vector<value>& list) {
  take_column(type, context, object, column, [&list]<class Read>(Read&& read) {
    if constexpr (std::is_same_v<std::remove_cvref_t<Read>, SetSpecifier>) {
      list.emplace_back(std::forward<Read>(read));
    } else {
      append_from_view(list, read);
    }
  });
}

}  // namespace db_util
