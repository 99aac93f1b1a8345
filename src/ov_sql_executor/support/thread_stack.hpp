#ifndef OV_SQL_EXECUTOR_SUPPORT_THREAD_STACK_HPP_
#define OV_SQL_EXECUTOR_SUPPORT_THREAD_STACK_HPP_

#include <cstddef>

#include "ov_sql_executor/errors/raise.hpp"

namespace ov::sql_executor {

// Whether the calling thread's stack has that many bytes left, plus a reserve for what is called besides. Assumes a
// small stack where the system does not know it. Asks the system, which takes some microseconds, once for as long as
// the thread stays on the same stack.
bool has_stack(std::size_t bytes);

// Throws OVException 7022 "Not implemented error" unless has_stack.
inline void require_stack(std::size_t bytes) {
  if (!has_stack(bytes)) error_handling::raise_not_implemented(error_handling::no_detail, L"Not implemented error");
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_SUPPORT_THREAD_STACK_HPP_
