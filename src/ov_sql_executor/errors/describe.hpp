#ifndef OV_SQL_EXECUTOR_ERRORS_DESCRIBE_HPP_
#define OV_SQL_EXECUTOR_ERRORS_DESCRIBE_HPP_

#include <cstdint>

#include "ov_sql_executor/errors/export.hpp"

namespace error_handling {

// Says in English what a code of OVException or of db_exception means, for a log or a message: "no such object" for
// 4104. Knows the codes of this library and the statuses that ovcoredb.h lists; any other is "a status of the core".
// Never returns null. Valid until: the program ends.
OV_SQL_EXECUTOR_API const char* describe(std::uint32_t code) noexcept;

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_DESCRIBE_HPP_
