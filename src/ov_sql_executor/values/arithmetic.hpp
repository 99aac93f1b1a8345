#ifndef OV_SQL_EXECUTOR_VALUES_ARITHMETIC_HPP_
#define OV_SQL_EXECUTOR_VALUES_ARITHMETIC_HPP_

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Each of these gives NULL where an operand is NULL. Each throws db_exception type_error for an operand that it does
// not accept and std::bad_variant_access for the view of a valueless value.

struct promoted_pair {
  value_view left;
  value_view right;
};

// Brings two values to one alternative: numbers to their common type (see promotion.hpp), and both to NULL where one is
// NULL. Leaves two values of any other alternative as they are. Throws db_exception out_of_range for a number that the
// common type cannot hold.
promoted_pair promote_pair(const value_view& left, const value_view& right);

// Calculate with the promoted pair. Integers and Decimals are checked: overflow and a divisor of zero are a
// db_exception out_of_range. Floating-point numbers follow IEEE 754 in their own precision. Two bools are not accepted,
// nor a bool and an unsigned number.
value_view add_values(const value_view& left, const value_view& right);
value_view subtract_values(const value_view& left, const value_view& right);
value_view multiply_values(const value_view& left, const value_view& right);
value_view divide_values(const value_view& left, const value_view& right);

// Turns an unsigned number into a signed one. Flips the sign bit of a floating-point number.
value_view negate_value(const value_view& number);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_ARITHMETIC_HPP_
