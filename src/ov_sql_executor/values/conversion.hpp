#ifndef OV_SQL_EXECUTOR_VALUES_CONVERSION_HPP_
#define OV_SQL_EXECUTOR_VALUES_CONVERSION_HPP_

#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Converts a value to the alternative Target, for casts, conditionals, arithmetic and limits. Returns the view of a
// Target as it is, converts numbers to numbers (see number_conversion.hpp), and gives NULL for NULL. Throws
// db_exception unsupported_conversion for a text that should become a number, type_error for every other pair, and
// std::bad_variant_access for the view of a valueless value.
//
// Target is any alternative but NullValue and SetSpecifier, which needs the metadata (see database/type_name.hpp).
template <class Target>
value_view convert_to(const value_view& source);

// Converts to a value that owns what it holds.
template <class Target>
value convert_to(const value& source) {
  return to_value(convert_to<Target>(view_of(source)));
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_CONVERSION_HPP_
