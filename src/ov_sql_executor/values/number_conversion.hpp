// What a number of one type becomes in another. Nothing is clamped: a number that does not fit throws db_exception
// out_of_range. A pair of types without a conversion throws db_exception unsupported_conversion.
#ifndef OV_SQL_EXECUTOR_VALUES_NUMBER_CONVERSION_HPP_
#define OV_SQL_EXECUTOR_VALUES_NUMBER_CONVERSION_HPP_

#include <concepts>
#include <cstdint>
#include <utility>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/decimal_arithmetic.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"

namespace ov::sql_executor {

// Truncates toward zero. Throws for infinities, NaN, and what lies outside the range before it is truncated: -0.5 is no
// unsigned number, but -0.0 is one.
template <std::integral Integer>
Integer truncate(double number) {
  constexpr double limit = std::same_as<Integer, std::int64_t> ? 9223372036854775808.0 : 18446744073709551616.0;
  constexpr double lowest = std::same_as<Integer, std::int64_t> ? -limit : 0.0;
  if (!(number >= lowest && number < limit)) throw db_util::db_exception{db_util::out_of_range};
  return static_cast<Integer>(number);
}

// Gives false for zero, true for any other number and for a NaN.
template <numeric_alternative From>
bool to_bool(From number) {
  return number != From{};
}

template <std::integral Integer, numeric_alternative From>
Integer to_integer(From number) {
  if constexpr (floating_alternative<From>) {
    return truncate<Integer>(number);
  } else if constexpr (std::same_as<From, Decimal>) {
    if constexpr (std::same_as<Integer, std::int64_t>) {
      return to_int64(number);
    } else {
      return to_uint64(number);
    }
  } else if constexpr (std::same_as<From, bool>) {
    return number ? 1 : 0;
  } else {
    if (!std::in_range<Integer>(number)) throw db_util::db_exception{db_util::out_of_range};
    return static_cast<Integer>(number);
  }
}

// Does not convert floating-point numbers.
template <numeric_alternative From>
Decimal to_decimal(From number) {
  if constexpr (floating_alternative<From>) {
    throw db_util::db_exception{db_util::unsupported_conversion};
  } else if constexpr (std::same_as<From, bool>) {
    return {number ? Decimal::scale : 0};
  } else {
    return decimal_of(number);
  }
}

// Gives the nearest number of the type. Does not convert double to float.
template <floating_alternative Floating, numeric_alternative From>
Floating to_floating(From number) {
  if constexpr (std::same_as<From, double> && std::same_as<Floating, float>) {
    throw db_util::db_exception{db_util::unsupported_conversion};
  } else if constexpr (std::same_as<From, Decimal>) {
    if constexpr (std::same_as<Floating, double>) {
      return to_double(number);
    } else {
      return to_float(number);
    }
  } else {
    return static_cast<Floating>(number);
  }
}

template <numeric_alternative To, numeric_alternative From>
To convert_number(From number) {
  if constexpr (std::same_as<To, From>) {
    return number;
  } else if constexpr (std::same_as<To, bool>) {
    return to_bool(number);
  } else if constexpr (std::same_as<To, Decimal>) {
    return to_decimal(number);
  } else if constexpr (floating_alternative<To>) {
    return to_floating<To>(number);
  } else {
    return to_integer<To>(number);
  }
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_NUMBER_CONVERSION_HPP_
