// How much stack the levels of a plan take while they are planned, run or destroyed: a little more than the hungriest
// node and the hungriest operation need as each compiler builds them. A test measures them.
#ifndef OV_SQL_EXECUTOR_ERRORS_STACK_WEIGHTS_HPP_
#define OV_SQL_EXECUTOR_ERRORS_STACK_WEIGHTS_HPP_

#include <cstddef>

namespace error_handling::stack_weights {

#if defined(__SANITIZE_ADDRESS__)
#define OV_SQL_EXECUTOR_GUARDS_FRAMES 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OV_SQL_EXECUTOR_GUARDS_FRAMES 1
#endif
#endif

#if defined(OV_SQL_EXECUTOR_GUARDS_FRAMES) && defined(__OPTIMIZE__)
inline constexpr std::size_t node = 4096;
inline constexpr std::size_t operation = 3072;
inline constexpr std::size_t reserve = 65536;
#elif defined(OV_SQL_EXECUTOR_GUARDS_FRAMES)
inline constexpr std::size_t node = 16384;
inline constexpr std::size_t operation = 8192;
inline constexpr std::size_t reserve = 65536;
#elif defined(__OPTIMIZE__)
inline constexpr std::size_t node = 1024;
inline constexpr std::size_t operation = 1024;
inline constexpr std::size_t reserve = 32768;
#else
inline constexpr std::size_t node = 4096;
inline constexpr std::size_t operation = 3072;
inline constexpr std::size_t reserve = 32768;
#endif

#undef OV_SQL_EXECUTOR_GUARDS_FRAMES

// What a plan may need without anybody looking at the stack.
inline constexpr std::size_t unchecked = 32 * node;

}  // namespace error_handling::stack_weights

#endif  // OV_SQL_EXECUTOR_ERRORS_STACK_WEIGHTS_HPP_
