#ifndef OV_SQL_EXECUTOR_ERRORS_THREAD_STACK_HPP_
#define OV_SQL_EXECUTOR_ERRORS_THREAD_STACK_HPP_

#include <cstddef>
#include <cstdint>

namespace error_handling {

// A stack that had room for something, and how that is found out. To ask the system takes some microseconds; as long
// as the caller stays on the same stack, it is asked once.
class thread_stack {
 public:
  // Throws OVException 7022 "Not implemented error" unless the calling thread's stack has that many bytes left, and a
  // reserve for whatever is called beside. Where the system does not know the stack that the caller runs on, a small
  // one is assumed.
  void require(std::size_t bytes);

 private:
  bool has(std::size_t bytes) const;

  std::uintptr_t lowest_ = 1;  // the lowest and the highest address of the stack; none yet
  std::uintptr_t highest_ = 0;
};

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_THREAD_STACK_HPP_
