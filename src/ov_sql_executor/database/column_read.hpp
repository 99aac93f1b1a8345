#ifndef OV_SQL_EXECUTOR_DATABASE_COLUMN_READ_HPP_
#define OV_SQL_EXECUTOR_DATABASE_COLUMN_READ_HPP_

#include <cstdint>
#include <vector>

#include "ov_sql_executor/values/type_code.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace db_util {

// Reads one column of one object with the one core call that its type has. A column without a value gives NULL; any
// other failure throws db_exception with the core's status. The second word carries the tag of the table that declares
// the column. Texts and binaries are lent by the core and valid until the next core call on the context; a set
// specifier, which takes no column, is copied into scratch.
ov::sql_executor::value_view read_column(ov::sql_executor::type_code type, std::uint64_t context, OV_OBJ_REF object,
                                         std::uint32_t column, ov::sql_executor::value& scratch);

// The same, as a value of its own at the end of a list.
void append_column(ov::sql_executor::type_code type, std::uint64_t context, OV_OBJ_REF object, std::uint32_t column,
                   std::vector<ov::sql_executor::value>& list);

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_COLUMN_READ_HPP_
