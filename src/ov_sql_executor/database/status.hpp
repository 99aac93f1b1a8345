#ifndef OV_SQL_EXECUTOR_DATABASE_STATUS_HPP_
#define OV_SQL_EXECUTOR_DATABASE_STATUS_HPP_

#include <cstdint>

#include "ov_sql_executor/errors/db_exception.hpp"

namespace db_util {

// Throws db_exception with the status of a core call that failed.
inline void check(std::uint32_t status) {
  if (status != 0) throw db_exception{status};
}

// Checks the status of a column read. Returns false for a column without a value.
inline bool check_has_value(std::uint32_t status) {
  if (status == no_value_status) return false;
  check(status);
  return true;
}

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_STATUS_HPP_
