// Exact arithmetic of Decimals, in integers of 128 bits. Products and quotients are rounded to millionths, halves away
// from zero. A result outside the range of Decimal, before it is rounded, throws db_exception out_of_range. Operands
// outside it, which a core may hand out, are no undefined behaviour.
#ifndef OV_SQL_EXECUTOR_VALUES_DECIMAL_ARITHMETIC_HPP_
#define OV_SQL_EXECUTOR_VALUES_DECIMAL_ARITHMETIC_HPP_

#include <cstdint>

#include "ov_sql_executor/values/decimal.hpp"

namespace ov::sql_executor {

using operator_library::Decimal;

// Checks nothing, since the range is symmetric. Leaves the one raw value without a negative as it is.
Decimal negate(Decimal number);

Decimal add(Decimal left, Decimal right);
Decimal subtract(Decimal left, Decimal right);
Decimal multiply(Decimal left, Decimal right);

// Throws for an operand outside the range and for a divisor of zero, too.
Decimal divide(Decimal left, Decimal right);

// Throw for a number beyond the largest integral part.
Decimal decimal_of(std::uint64_t number);
Decimal decimal_of(std::int64_t number);

// Truncate toward zero. to_uint64 throws for every negative number.
std::int64_t to_int64(Decimal number);
std::uint64_t to_uint64(Decimal number);

// Round the raw value to the type, then divide in the precision of the type.
double to_double(Decimal number);
float to_float(Decimal number);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_DECIMAL_ARITHMETIC_HPP_
