#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_CONSTANTS_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_CONSTANTS_HPP_

#include <cstdint>
#include <vector>

#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// Converts to a position in a list of the execution context. Throws boost::numeric::positive_overflow beyond 32767.
std::int16_t to_position(std::uint64_t index);

// Appends a literal to the plan's list and returns its position. Throws boost::numeric::positive_overflow for a
// position beyond 32767. The value stays appended then, since planning ends.
std::int16_t add_constant(std::vector<value>& constants, value literal);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_CONSTANTS_HPP_
