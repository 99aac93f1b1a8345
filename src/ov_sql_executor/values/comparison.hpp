#ifndef OV_SQL_EXECUTOR_VALUES_COMPARISON_HPP_
#define OV_SQL_EXECUTOR_VALUES_COMPARISON_HPP_

#include <compare>
#include <optional>

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Orders two values for the comparison operators; gives nothing where one is NULL. Compares numbers of all types
// exactly; a NaN is unordered. Compares texts, binaries, references (by object number) and set specifiers with their
// own kind. Throws db_exception type_error for every other pair and std::bad_variant_access for the view of a valueless
// value.
std::optional<std::partial_ordering> compare_values(const value_view& left, const value_view& right);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_COMPARISON_HPP_
