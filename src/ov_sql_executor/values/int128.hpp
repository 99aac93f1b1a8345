#ifndef OV_SQL_EXECUTOR_VALUES_INT128_HPP_
#define OV_SQL_EXECUTOR_VALUES_INT128_HPP_

namespace ov::sql_executor {

// Wide enough for the product of any two 64-bit numbers.
__extension__ using int128 = __int128;

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_INT128_HPP_
