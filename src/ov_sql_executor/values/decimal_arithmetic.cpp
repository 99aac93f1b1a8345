#include "ov_sql_executor/values/decimal_arithmetic.hpp"

#include <cassert>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/checked_arithmetic.hpp"
#include "ov_sql_executor/values/int128.hpp"

namespace ov::sql_executor {

namespace {

[[noreturn]] void reject() { throw db_util::db_exception{db_util::out_of_range}; }

std::int64_t in_range(std::int64_t raw) {
  if (raw < -Decimal::max_raw || raw > Decimal::max_raw) reject();
  return raw;
}

template <class Integer>
constexpr Integer magnitude(Integer number) {
  return number < 0 ? -number : number;
}

// Requires: the quotient is in range, so that rounding does not overflow.
template <class Integer>
std::int64_t rounded_quotient(Integer dividend, std::int64_t divisor) {
  const auto quotient = static_cast<std::int64_t>(dividend / divisor);
  assert(magnitude(quotient) <= Decimal::max_raw);
  const auto rest = static_cast<std::int64_t>(dividend % divisor);
  if (magnitude(rest) < magnitude(divisor) - magnitude(rest)) return quotient;
  return (dividend < 0) == (divisor < 0) ? quotient + 1 : quotient - 1;
}

}  // namespace

Decimal negate(Decimal number) { return {static_cast<std::int64_t>(0 - static_cast<std::uint64_t>(number.raw))}; }

Decimal add(Decimal left, Decimal right) { return {in_range(checked_add(left.raw, right.raw))}; }

Decimal subtract(Decimal left, Decimal right) { return {in_range(checked_subtract(left.raw, right.raw))}; }

Decimal multiply(Decimal left, Decimal right) {
  const int128 product = int128{left.raw} * right.raw;
  if (magnitude(product) > int128{Decimal::max_raw} * Decimal::scale) reject();
  // Most products fit 64 bits, where the division by a constant becomes a multiplication.
  const auto low = static_cast<std::int64_t>(product);
  return {low == product ? rounded_quotient(low, Decimal::scale) : rounded_quotient(product, Decimal::scale)};
}

Decimal divide(Decimal left, Decimal right) {
  const int128 dividend = int128{in_range(left.raw)} * Decimal::scale;
  const std::int64_t divisor = in_range(right.raw);
  if (divisor == 0 || magnitude(dividend) > int128{Decimal::max_raw} * magnitude(divisor)) reject();
  return {rounded_quotient(dividend, divisor)};
}

Decimal decimal_of(std::uint64_t number) {
  if (number > std::uint64_t{Decimal::max_integral}) reject();
  return {static_cast<std::int64_t>(number) * Decimal::scale};
}

Decimal decimal_of(std::int64_t number) {
  if (number < -Decimal::max_integral || number > Decimal::max_integral) reject();
  return {number * Decimal::scale};
}

std::int64_t to_int64(Decimal number) { return number.raw / Decimal::scale; }

std::uint64_t to_uint64(Decimal number) {
  if (number.raw < 0) reject();
  return static_cast<std::uint64_t>(number.raw / Decimal::scale);
}

double to_double(Decimal number) { return static_cast<double>(number.raw) / static_cast<double>(Decimal::scale); }

float to_float(Decimal number) { return static_cast<float>(number.raw) / static_cast<float>(Decimal::scale); }

}  // namespace ov::sql_executor
