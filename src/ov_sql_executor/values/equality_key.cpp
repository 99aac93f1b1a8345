#include "ov_sql_executor/values/equality_key.hpp"

#include <cmath>
#include <utility>

#include "ov_sql_executor/values/group_key.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"

namespace ov::sql_executor {

namespace {

using operator_library::Decimal;

value_view key_of(bool number) { return std::int64_t{number ? 1 : 0}; }
value_view key_of(std::int64_t number) { return number; }
value_view key_of(std::uint64_t number) {
  return std::in_range<std::int64_t>(number) ? value_view(static_cast<std::int64_t>(number)) : number;
}
value_view key_of(Decimal number) {
  return number.raw % Decimal::scale == 0 ? value_view(number.raw / Decimal::scale) : number;
}

value_view key_of_whole(double number) {
  constexpr double int64_end = 9223372036854775808.0;    // 2^63
  constexpr double uint64_end = 18446744073709551616.0;  // 2^64
  if (number >= -int64_end && number < int64_end) return static_cast<std::int64_t>(number);
  if (number >= int64_end && number < uint64_end) return static_cast<std::uint64_t>(number);
  return number;
}

// The number is m * 2^-s with an odd m. 10^6 is 64 * 15,625, so that millionths need s to be at most 6.
value_view key_of_fraction(double number) {
  constexpr std::int64_t millionths = Decimal::scale / 64;
  const double count = number * 64;  // exact, and below 2^58
  std::int64_t raw = 0;
  if (count != std::trunc(count)) return number;
  if (__builtin_mul_overflow(static_cast<std::int64_t>(count), millionths, &raw)) return number;
  return Decimal{raw};
}

value_view key_of(double number) {
  if (!std::isfinite(number)) return number;
  return number == std::trunc(number) ? key_of_whole(number) : key_of_fraction(number);
}
value_view key_of(float number) { return key_of(static_cast<double>(number)); }

}  // namespace

value_view equality_key(const value_view& any) {
  return visit_view(
      [&any]<class T>(const T& held) -> value_view {
        if constexpr (numeric_alternative<T>) {
          return key_of(held);
        } else {
          return any;
        }
      },
      any);
}

bool equality_equal(const value_view& left, const value_view& right) {
  return !std::holds_alternative<operator_library::NullValue>(left) &&
         key_equal(equality_key(left), equality_key(right));
}

}  // namespace ov::sql_executor
