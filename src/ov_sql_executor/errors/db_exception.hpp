#ifndef OV_SQL_EXECUTOR_ERRORS_DB_EXCEPTION_HPP_
#define OV_SQL_EXECUTOR_ERRORS_DB_EXCEPTION_HPP_

#include <cstdint>

#include "ov_sql_executor/errors/export.hpp"

namespace db_util {

// A failure while rows are produced or metadata are read. The code is a status of the core, passed on unchanged, or one
// of the codes below; describe.hpp puts either into words. Thrown and caught by value; deliberately not a
// std::exception.
struct OV_SQL_EXECUTOR_API db_exception {
  std::uint32_t code;
};

// Codes that this library raises itself.
inline constexpr std::uint32_t unsupported_conversion = 1027;  // no conversion between the two types
inline constexpr std::uint32_t key_too_long = 4197;            // an index key does not fit its buffer
inline constexpr std::uint32_t type_error = 7020;  // an operand of a type that the operation does not accept
// Overflow, division by zero, a value outside the target's range; a NaN in an ordering, a maximum or a minimum.
inline constexpr std::uint32_t out_of_range = 7041;

// The core's status for a column that holds no value.
inline constexpr std::uint32_t no_value_status = 4272;

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_ERRORS_DB_EXCEPTION_HPP_
