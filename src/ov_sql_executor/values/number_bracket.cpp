#include "ov_sql_executor/values/number_bracket.hpp"

#include <cassert>

namespace ov::sql_executor {

std::int64_t floor_in_millionths(double number) {
  assert(compare_with_millionths(number, -operator_library::Decimal::max_raw) >= 0 &&
         compare_with_millionths(number, operator_library::Decimal::max_raw) <= 0);
  // Rounding may lift the product to the next whole number, never below one. The exact comparison corrects that.
  const double whole = std::trunc(number);
  const double millionths = std::floor((number - whole) * static_cast<double>(operator_library::Decimal::scale));
  std::int64_t floor =
      static_cast<std::int64_t>(whole) * operator_library::Decimal::scale + static_cast<std::int64_t>(millionths);
  if (compare_with_millionths(number, floor) < 0) --floor;
  return floor;
}

}  // namespace ov::sql_executor
