#ifndef OV_SQL_EXECUTOR_VALUES_TYPE_CODE_HPP_
#define OV_SQL_EXECUTOR_VALUES_TYPE_CODE_HPP_

#include <cstdint>

namespace ov::sql_executor {

// The types of key columns and of properties, numbered as in the metadata's key columns. The alternatives of value have
// another order.
enum class type_code : std::int32_t {
  uint64 = 0,
  int64 = 1,
  decimal = 2,
  float32 = 3,
  float64 = 4,
  tt_string = 5,
  binary = 6,
  obj_ref = 7,
  set_specifier = 8,
  boolean = 9,
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_TYPE_CODE_HPP_
