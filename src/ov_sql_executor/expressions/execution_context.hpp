#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_EXECUTION_CONTEXT_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_EXECUTION_CONTEXT_HPP_

#include <cstdint>
#include <vector>

#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// The state of one run, handed to every node, enumerator and operator. Serves one enumerator tree on one thread at a
// time. After an exception it is discarded with the tree.
//
// Expressions read the lists by position (0 to 32767). The row stack holds the rows in scope, outermost first:
//
//    ... enclosing rows ... | outer row of a join | input row of the node that evaluates
//    0                        d                     d + outer width
//
// Whoever needs a row in scope appends its values, works, and takes them off again. So create_enumerator and next
// return with the stack as long as they found it.
struct execution_context {
  std::vector<value> constants;      // the literals of the plan, from the runnable
  std::vector<value> variables;      // the statement's parameters, by number
  std::vector<value> row_stack;      // empty when a run starts
  std::uint64_t context_handle = 0;  // the core database's context of the running thread
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_EXECUTION_CONTEXT_HPP_
