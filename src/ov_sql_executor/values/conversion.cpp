#include "ov_sql_executor/values/conversion.hpp"

#include <concepts>
#include <variant>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/number_conversion.hpp"

namespace ov::sql_executor {

namespace {

template <class Target, class Source>
value_view convert_alternative(const Source& source) {
  if constexpr (std::same_as<Source, std::monostate>) {
    throw std::bad_variant_access();
  } else if constexpr (std::same_as<Source, operator_library::NullValue> || std::same_as<Source, Target>) {
    return source;
  } else if constexpr (numeric_alternative<Source> && numeric_alternative<Target>) {
    return convert_number<Target>(source);
  } else if constexpr (std::same_as<Source, text_view> && numeric_alternative<Target>) {
    throw db_util::db_exception{db_util::unsupported_conversion};
  } else {
    throw db_util::db_exception{db_util::type_error};
  }
}

}  // namespace

template <class Target>
value_view convert_to(const value_view& source) {
  return visit_view([](const auto& held) { return convert_alternative<view_alternative<Target>>(held); }, source);
}

template value_view convert_to<bool>(const value_view&);
template value_view convert_to<db_string::tt_string>(const value_view&);
template value_view convert_to<std::uint64_t>(const value_view&);
template value_view convert_to<std::int64_t>(const value_view&);
template value_view convert_to<operator_library::Decimal>(const value_view&);
template value_view convert_to<double>(const value_view&);
template value_view convert_to<float>(const value_view&);
template value_view convert_to<operator_library::Binary>(const value_view&);
template value_view convert_to<OV_OBJ_REF>(const value_view&);

}  // namespace ov::sql_executor
