#ifndef OV_SQL_EXECUTOR_SUPPORT_THREAD_STACK_HPP_
#define OV_SQL_EXECUTOR_SUPPORT_THREAD_STACK_HPP_

#include <cstddef>

namespace ov::sql_executor {

// Throws OVException 7022 "Not implemented error" unless the calling thread's stack has that many bytes left, and a
// reserve for whatever is called beside. Where the system does not know the stack that the caller runs on, a small one
// is assumed. To ask the system takes some microseconds; as long as a thread stays on the same stack, it is asked once.
void require_stack(std::size_t bytes);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_SUPPORT_THREAD_STACK_HPP_
