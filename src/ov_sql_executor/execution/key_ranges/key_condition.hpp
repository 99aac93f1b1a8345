#ifndef OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_KEY_CONDITION_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_KEY_CONDITION_HPP_

#include <cstdint>

#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// How a key column's value compares with a bound.
enum class key_operation : std::int32_t {
  greater = 0,
  less = 1,
  equal = 2,
  at_least = 3,
  at_most = 4,
  starts_with = 5,  // texts and set specifiers only
};

// One condition on a key column of a scan.
struct key_condition {
  key_operation op;
  // True: NULL keys do not match, and a NULL bound matches nothing.
  // False: NULL is the lowest key value, but above a bound that is below all numbers of the column's type.
  bool rejects_null;
  operators::operand bound;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEY_RANGES_KEY_CONDITION_HPP_
