#ifndef OV_SQL_EXECUTOR_EXECUTION_RUNNABLE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_RUNNABLE_HPP_

#include <memory>
#include <vector>

#include "ov_sql_executor/execution/node.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// A planned statement. It holds no database resources and can be run any number of times:
//
//   execution_context context{statement.constants, parameters, {}, core_context_handle};
//   std::unique_ptr<enumerator> rows(statement.root->create_enumerator(context));
//   while (std::optional<row> next = rows->next(context)) { ... }
//
// The enumerator is destroyed before the runnable. The core context serves the running thread alone; a conversion of a
// text to a set specifier, a type's name, also reads metadata on that thread's metadata-layer context.
struct runnable {
  std::unique_ptr<node> root;
  std::vector<value> constants;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_RUNNABLE_HPP_
