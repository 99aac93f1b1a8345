#include "ov_sql_executor/values/numeric_order.hpp"

#include <cassert>
#include <cmath>
#include <cstdlib>

#include "ov_sql_executor/values/decimal.hpp"

namespace ov::sql_executor {

namespace {

// Compares fraction * 10^6 with millionths. The fraction is m * 2^-s with a 53-bit m, so it compares m * 10^6 with
// millionths * 2^s. Requires: |fraction| < 1 and |millionths| < 10^6.
std::partial_ordering compare_fraction(double fraction, std::int64_t millionths) {
  assert(std::abs(fraction) < 1 && std::abs(millionths) < operator_library::Decimal::scale);
  int exponent = 0;
  const double mantissa = std::frexp(fraction, &exponent);
  const int shift = 53 - exponent;
  const auto scaled = static_cast<int128>(std::ldexp(mantissa, 53)) * operator_library::Decimal::scale;
  // The left side stays below 2^73: beyond that shift a single millionth outweighs it.
  constexpr int deciding_shift = 80;
  if (shift > deciding_shift) {
    return millionths != 0 ? 0 <=> millionths : scaled <=> int128{0};
  }
  return scaled <=> int128{millionths} * (int128{1} << shift);
}

}  // namespace

std::partial_ordering compare_with_integer(double left, int128 right) {
  constexpr double beyond_all = 36893488147419103232.0;  // 2^65; the integers compared have at most 64 bits
  if (std::isnan(left)) return std::partial_ordering::unordered;
  if (std::fabs(left) >= beyond_all) return left <=> 0.0;
  const double whole = std::trunc(left);
  const std::partial_ordering order = static_cast<int128>(whole) <=> right;
  return order != 0 ? order : left <=> whole;
}

std::partial_ordering compare_with_millionths(double left, std::int64_t right) {
  constexpr double beyond_all = 1e13;  // 2^63 millionths are less
  if (std::isnan(left)) return std::partial_ordering::unordered;
  if (std::fabs(left) >= beyond_all) return left <=> 0.0;
  // Truncation keeps the order, and the remainder is exact in a double.
  const double whole = std::trunc(left);
  const std::partial_ordering order = static_cast<std::int64_t>(whole) <=> right / operator_library::Decimal::scale;
  return order != 0 ? order : compare_fraction(left - whole, right % operator_library::Decimal::scale);
}

}  // namespace ov::sql_executor
