#ifndef OV_SQL_EXECUTOR_VALUES_SORT_ORDER_HPP_
#define OV_SQL_EXECUTOR_VALUES_SORT_ORDER_HPP_

#include <compare>

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// The order by which rows are sorted and maxima and minima are found: NULL is lowest and equals NULL. Throws
// std::logic_error "incompatible types" for two values of different alternatives, db_exception out_of_range for a NaN
// on either side and std::bad_variant_access for the view of a valueless value.
std::strong_ordering sort_order(const value_view& left, const value_view& right);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_SORT_ORDER_HPP_
