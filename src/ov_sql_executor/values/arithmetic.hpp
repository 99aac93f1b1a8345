#ifndef OV_SQL_EXECUTOR_VALUES_ARITHMETIC_HPP_
#define OV_SQL_EXECUTOR_VALUES_ARITHMETIC_HPP_

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// All of this: NULL where an operand is NULL, db_exception type_error for what does not take part,
// std::bad_variant_access for the view of a valueless value.

struct promoted_pair {
  value_view left;
  value_view right;
};

// Brings two values to one alternative: numbers to their common type (see promotion.hpp), two NULLs where one is NULL.
// Two values of one other alternative stay what they are. Throws db_exception out_of_range for a number that the common
// type cannot hold.
promoted_pair promote_pair(const value_view& left, const value_view& right);

// Arithmetic on the promoted pair: integers and Decimals checked (db_exception out_of_range for overflow and for a
// divisor of zero), floating-point numbers as IEEE 754 has it in their own precision. Two bools, or a bool and an
// unsigned number, do not take part.
value_view add_values(const value_view& left, const value_view& right);
value_view subtract_values(const value_view& left, const value_view& right);
value_view multiply_values(const value_view& left, const value_view& right);
value_view divide_values(const value_view& left, const value_view& right);

// An unsigned number becomes a signed one; of a floating-point number the sign bit is flipped.
value_view negate_value(const value_view& number);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_ARITHMETIC_HPP_
