#ifndef OV_SQL_EXECUTOR_EXECUTION_DESCRIBE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_DESCRIBE_HPP_

#include <string>

#include "ov_sql_executor/errors/export.hpp"
#include "ov_sql_executor/execution/node.hpp"

namespace ov::sql_executor {

// Says what a tree of nodes does, for debugging: a line for each node, its inputs below it and indented by two spaces.
// Trees of any depth, on any stack. Throws std::bad_alloc.
//
//    projection, 2 values
//      nested_loop_inner_join
//        scan, index 12
//        filter
//          scan, index 14, 1 of 2 key columns restricted, descending
OV_SQL_EXECUTOR_API std::string describe(const node& root);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_DESCRIBE_HPP_
