#ifndef OV_SQL_EXECUTOR_VALUES_NUMERIC_ORDER_HPP_
#define OV_SQL_EXECUTOR_VALUES_NUMERIC_ORDER_HPP_

#include <compare>
#include <cstdint>
#include <utility>

#include "ov_sql_executor/values/int128.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"

namespace ov::sql_executor {

// Compare a floating-point number exactly with an integer, and with a count of millionths.
std::partial_ordering compare_with_integer(double left, int128 right);
std::partial_ordering compare_with_millionths(double left, std::int64_t right);

// Compares as compare_with_integer does, faster, with the commonest integers.
inline std::partial_ordering compare_with_int64(double left, std::int64_t right) {
  constexpr double beyond_all = 9223372036854775808.0;  // 2^63
  if (left >= beyond_all) return std::partial_ordering::greater;
  if (left < -beyond_all) return std::partial_ordering::less;
  if (left != left) return std::partial_ordering::unordered;
  const auto whole = static_cast<std::int64_t>(left);
  return whole != right ? whole <=> right : left <=> static_cast<double>(whole);
}

// Orders the numbers that two values denote. Is exact for every pair of types, and unordered for a NaN. Infinities are
// beyond every finite number and equal to themselves.
template <numeric_alternative Left, numeric_alternative Right>
std::partial_ordering compare_numbers(Left left, Right right) {
  using operator_library::Decimal;
  if constexpr (std::same_as<Left, Right>) {
    return left <=> right;
  } else if constexpr (floating_alternative<Left> && floating_alternative<Right>) {
    return static_cast<double>(left) <=> static_cast<double>(right);
  } else if constexpr (floating_alternative<Left> && std::same_as<Right, std::int64_t>) {
    return compare_with_int64(static_cast<double>(left), right);
  } else if constexpr (floating_alternative<Left> && integer_alternative<Right>) {
    return compare_with_integer(static_cast<double>(left), right);
  } else if constexpr (floating_alternative<Left>) {
    return compare_with_millionths(static_cast<double>(left), right.raw);
  } else if constexpr (integer_alternative<Left> && integer_alternative<Right>) {
    return int128{left} <=> int128{right};
  } else if constexpr (integer_alternative<Left> && std::same_as<Right, Decimal>) {
    return int128{left} * Decimal::scale <=> int128{right.raw};
  } else {
    return 0 <=> compare_numbers(right, left);
  }
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_NUMERIC_ORDER_HPP_
