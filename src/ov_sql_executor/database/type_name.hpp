#ifndef OV_SQL_EXECUTOR_DATABASE_TYPE_NAME_HPP_
#define OV_SQL_EXECUTOR_DATABASE_TYPE_NAME_HPP_

#include <optional>

#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace meta_data {

using ov::sql_executor::text_view;
using ov::sql_executor::value;
using ov::sql_executor::value_view;

// Finds the set specifier of a type by a name such as "Shop.Order", in any letter case. Reads on the calling thread's
// metadata-layer context. Gives nothing where there is no such type or it states no specifier. Throws db_exception with
// the core's status.
std::optional<operator_library::SetSpecifier> find_set_specifier(text_view type_name);

// Converts a value to a set specifier: looks a text up as a type name. Gives NULL for a text that names no type, and
// for NULL. Throws db_exception type_error for all others, set specifiers included, and std::bad_variant_access for the
// view of a valueless value.
value to_set_specifier(const value_view& source);

}  // namespace meta_data

#endif  // OV_SQL_EXECUTOR_DATABASE_TYPE_NAME_HPP_
