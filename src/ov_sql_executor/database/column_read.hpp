#ifndef OV_SQL_EXECUTOR_DATABASE_COLUMN_READ_HPP_
#define OV_SQL_EXECUTOR_DATABASE_COLUMN_READ_HPP_

#include <cstdint>
#include <vector>

#include "ov_sql_executor/values/type_code.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace db_util {

// Reads one column of one object with the one core call for its type. Gives NULL for a column without a value. Copies a
// set specifier, which takes no column, into scratch. Requires: the second word carries the tag of the table that
// declares the column. Throws db_exception with the core's status for any other failure. Valid until: the next core
// call on the context, since the core lends texts and binaries.
ov::sql_executor::value_view read_column(ov::sql_executor::type_code type, std::uint64_t context, OV_OBJ_REF object,
                                         std::uint32_t column, ov::sql_executor::value& scratch);

// Reads the column as read_column does, and appends a copy of its value to a list.
void append_column(ov::sql_executor::type_code type, std::uint64_t context, OV_OBJ_REF object, std::uint32_t column,
                   std::vector<ov::sql_executor::value>& list);

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_COLUMN_READ_HPP_
