#ifndef OV_SQL_EXECUTOR_VALUES_CHECKED_ARITHMETIC_HPP_
#define OV_SQL_EXECUTOR_VALUES_CHECKED_ARITHMETIC_HPP_

#include <cstdint>
#include <limits>

#include "ov_sql_executor/errors/db_exception.hpp"

namespace ov::sql_executor {

// Integer arithmetic that never wraps. Every function throws db_exception out_of_range for a result that does not fit.

inline std::int64_t checked_add(std::int64_t left, std::int64_t right) {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(left, right, &sum)) throw db_util::db_exception{db_util::out_of_range};
  return sum;
}

inline std::int64_t checked_subtract(std::int64_t left, std::int64_t right) {
  std::int64_t difference = 0;
  if (__builtin_sub_overflow(left, right, &difference)) throw db_util::db_exception{db_util::out_of_range};
  return difference;
}

inline std::int64_t checked_multiply(std::int64_t left, std::int64_t right) {
  std::int64_t product = 0;
  if (__builtin_mul_overflow(left, right, &product)) throw db_util::db_exception{db_util::out_of_range};
  return product;
}

// Truncates toward zero. Throws for a divisor of zero, too.
inline std::int64_t checked_divide(std::int64_t left, std::int64_t right) {
  const bool overflows = left == std::numeric_limits<std::int64_t>::min() && right == -1;
  if (right == 0 || overflows) throw db_util::db_exception{db_util::out_of_range};
  return left / right;
}

inline std::int64_t checked_negate(std::int64_t number) { return checked_subtract(0, number); }

// Gives a signed number.
inline std::int64_t checked_negate(std::uint64_t number) {
  if (number > std::uint64_t{std::numeric_limits<std::int64_t>::max()}) {
    throw db_util::db_exception{db_util::out_of_range};
  }
  return -static_cast<std::int64_t>(number);
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_CHECKED_ARITHMETIC_HPP_
