#ifndef OV_SQL_EXECUTOR_SUPPORT_THREAD_STACK_HPP_
#define OV_SQL_EXECUTOR_SUPPORT_THREAD_STACK_HPP_

#include <cstddef>

namespace ov::sql_executor {

// Throws OVException 7022 "Not implemented error" unless the calling thread's stack has that many bytes left, plus a
// reserve for what is called besides. Assumes a small stack where the system does not know it. Asks the system, which
// takes some microseconds, once for as long as the thread stays on the same stack.
void require_stack(std::size_t bytes);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_SUPPORT_THREAD_STACK_HPP_
