#ifndef OV_SQL_EXECUTOR_VALUES_CONVERSION_HPP_
#define OV_SQL_EXECUTOR_VALUES_CONVERSION_HPP_

#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// The conversion of any value to the alternative Target: casts, conditionals, arithmetic and limits share it. It is the
// same view where the value is a Target, of another number a number (see number_conversion.hpp), NULL of NULL. Throws
// db_exception unsupported_conversion for a text that should become a number, type_error for every other pair, and
// std::bad_variant_access for the view of a valueless value.
//
// Target is any alternative but SetSpecifier, which needs the metadata (see database/type_name.hpp), and NullValue.
template <class Target>
value_view convert_to(const value_view& source);

// The same, as a value of its own.
template <class Target>
value convert_to(const value& source) {
  return to_value(convert_to<Target>(view_of(source)));
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_CONVERSION_HPP_
