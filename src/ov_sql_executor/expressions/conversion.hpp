#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_CONVERSION_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_CONVERSION_HPP_

#include <concepts>

#include "ov_sql_executor/database/type_name.hpp"
#include "ov_sql_executor/values/conversion.hpp"

namespace ov::sql_executor::operators {

// Converts to any alternative, for casts and conditionals. Knows two more than values/conversion.hpp: the set
// specifier, whose result is put into scratch, and NullValue, which everything becomes. What source shows may lie in
// scratch.
template <class Target>
value_view convert_in(const value_view& source, value& scratch) {
  if constexpr (std::same_as<Target, operator_library::NullValue>) {
    return operator_library::NullValue{};
  } else if constexpr (std::same_as<Target, operator_library::SetSpecifier>) {
    scratch = meta_data::to_set_specifier(source);
    return view_of(scratch);
  } else {
    return convert_to<Target>(source);
  }
}

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_CONVERSION_HPP_
