#ifndef OV_SQL_EXECUTOR_VALUES_NUMBER_BRACKET_HPP_
#define OV_SQL_EXECUTOR_VALUES_NUMBER_BRACKET_HPP_

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>

#include "ov_sql_executor/values/decimal.hpp"
#include "ov_sql_executor/values/numeric_order.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"

namespace ov::sql_executor {

// Types whose values can be listed: a number of any type is one of their values or lies between two.
template <class T>
concept discrete_alternative = integer_alternative<T> || std::same_as<T, operator_library::Decimal>;

template <integer_alternative T>
constexpr T lowest_of(T) {
  return std::numeric_limits<T>::min();
}
template <integer_alternative T>
constexpr T highest_of(T) {
  return std::numeric_limits<T>::max();
}
constexpr operator_library::Decimal lowest_of(operator_library::Decimal) {
  return {-operator_library::Decimal::max_raw};
}
constexpr operator_library::Decimal highest_of(operator_library::Decimal) {
  return {operator_library::Decimal::max_raw};
}

// Says where a number lies among the values of T.
template <discrete_alternative T>
struct number_bracket {
  enum class place { below, inside, above, unknown };  // of the range of T; unknown for a NaN

  place where = place::inside;
  T floor{};    // inside: the greatest value that is not above the number
  T ceiling{};  // inside: the least value that is not below it; equal to floor when the number is a value of T

  bool is_exact() const { return floor == ceiling; }
};

// Returns the greatest count of millionths that is not above the number. Requires: the number is within the range of
// Decimal.
std::int64_t floor_in_millionths(double number);

template <discrete_alternative T, numeric_alternative Number>
number_bracket<T> bracket_number(Number number) {
  using operator_library::Decimal;
  using bracket = number_bracket<T>;
  const std::partial_ordering to_lowest = compare_numbers(number, lowest_of(T{}));
  if (to_lowest == std::partial_ordering::unordered) return {bracket::place::unknown};
  if (to_lowest < 0) return {bracket::place::below};
  if (compare_numbers(number, highest_of(T{})) > 0) return {bracket::place::above};

  const auto inside = [](auto floor, auto ceiling) -> bracket {
    return {bracket::place::inside, static_cast<T>(floor), static_cast<T>(ceiling)};
  };
  // NOLINTNEXTLINE(bugprone-branch-clone): alike in some instances only
  if constexpr (std::same_as<T, Number>) {
    return inside(number, number);
  } else if constexpr (std::same_as<T, Decimal> && integer_alternative<Number>) {
    const Decimal exact{static_cast<std::int64_t>(number) * Decimal::scale};
    return inside(exact, exact);
  } else if constexpr (std::same_as<T, Decimal>) {
    const auto wide = static_cast<double>(number);
    const std::int64_t floor = floor_in_millionths(wide);
    return inside(Decimal{floor}, Decimal{compare_with_millionths(wide, floor) == 0 ? floor : floor + 1});
  } else if constexpr (std::same_as<Number, Decimal>) {
    const std::int64_t whole = number.raw / Decimal::scale;
    const std::int64_t rest = number.raw % Decimal::scale;
    return inside(whole - (rest < 0 ? 1 : 0), whole + (rest > 0 ? 1 : 0));
  } else if constexpr (floating_alternative<Number>) {
    return inside(std::floor(number), std::ceil(number));
  } else {
    return inside(number, number);
  }
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_NUMBER_BRACKET_HPP_
