#ifndef OV_SQL_EXECUTOR_ERRORS_FATAL_STOP_HPP_
#define OV_SQL_EXECUTOR_ERRORS_FATAL_STOP_HPP_

#include <cstdint>

namespace error_handling {

// A core iterator that cannot be freed: the code of the structured exception and its first argument.
inline constexpr std::uint32_t iterator_free_failed = 0xE0530002;
inline constexpr std::uint64_t iterator_free_failed_argument = 1070;

// Ends the process where no exception may be thrown. On Windows raises the structured exception, with the thread's last
// operating-system error as the second argument. Elsewhere prints code and arguments to standard error and aborts.
[[noreturn]] void stop_process(std::uint32_t code, std::uint64_t first_argument) noexcept;

}  // namespace error_handling

#endif  // OV_SQL_EXECUTOR_ERRORS_FATAL_STOP_HPP_
