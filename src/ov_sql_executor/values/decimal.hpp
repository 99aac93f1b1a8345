#ifndef OV_SQL_EXECUTOR_VALUES_DECIMAL_HPP_
#define OV_SQL_EXECUTOR_VALUES_DECIMAL_HPP_

#include <compare>
#include <cstdint>

namespace operator_library {

// An exact fixed-point number: a signed count of millionths. A core may hand out a raw value outside the valid range.
// Such a value compares like any other; operations that check their operands refuse it.
struct Decimal {
  std::int64_t raw = 0;

  static constexpr std::int64_t scale = 1'000'000;
  // The largest integral part, 2^42 - 1, and the largest raw value: 4,398,046,511,103.999999.
  static constexpr std::int64_t max_integral = 4'398'046'511'103;
  static constexpr std::int64_t max_raw = 4'398'046'511'103'999'999;

  friend constexpr bool operator==(Decimal, Decimal) = default;
  friend constexpr auto operator<=>(Decimal, Decimal) = default;
};

}  // namespace operator_library

#endif  // OV_SQL_EXECUTOR_VALUES_DECIMAL_HPP_
