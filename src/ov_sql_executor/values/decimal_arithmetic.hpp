// Exact arithmetic of Decimals, by integers of 128 bits. Products and quotients are rounded to millionths, halves away
// from zero. Results outside the range of Decimal, judged before they are rounded, throw db_exception out_of_range;
// operands outside it, which a core may hand out, are no undefined behaviour.
#ifndef OV_SQL_EXECUTOR_VALUES_DECIMAL_ARITHMETIC_HPP_
#define OV_SQL_EXECUTOR_VALUES_DECIMAL_ARITHMETIC_HPP_

#include <cstdint>

#include "ov_sql_executor/values/decimal.hpp"

namespace ov::sql_executor {

using operator_library::Decimal;

// Not checked, since the range is symmetric. The one raw value without a negative stays as it is.
Decimal negate(Decimal number);

Decimal add(Decimal left, Decimal right);
Decimal subtract(Decimal left, Decimal right);
Decimal multiply(Decimal left, Decimal right);

// Throws also for an operand outside the range and for a divisor of zero.
Decimal divide(Decimal left, Decimal right);

// Throw beyond the largest integral part.
Decimal decimal_of(std::uint64_t number);
Decimal decimal_of(std::int64_t number);

// Truncated toward zero. The unsigned one throws for every negative number.
std::int64_t to_int64(Decimal number);
std::uint64_t to_uint64(Decimal number);

// The raw value, rounded to the type, divided in the precision of the type.
double to_double(Decimal number);
float to_float(Decimal number);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_DECIMAL_ARITHMETIC_HPP_
