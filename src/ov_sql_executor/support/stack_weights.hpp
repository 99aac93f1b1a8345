// How much stack each level of a plan takes while it is planned, run or destroyed: a little more than the hungriest
// node and the hungriest operation need with each compiler. A test measures them.
#ifndef OV_SQL_EXECUTOR_SUPPORT_STACK_WEIGHTS_HPP_
#define OV_SQL_EXECUTOR_SUPPORT_STACK_WEIGHTS_HPP_

#include <cstddef>

namespace ov::sql_executor::stack_weights {

#if defined(__SANITIZE_ADDRESS__)
#define OV_SQL_EXECUTOR_GUARDS_FRAMES 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OV_SQL_EXECUTOR_GUARDS_FRAMES 1
#endif
#endif

#if defined(OV_SQL_EXECUTOR_GUARDS_FRAMES)
inline constexpr bool guards_frames = true;
#undef OV_SQL_EXECUTOR_GUARDS_FRAMES
#else
inline constexpr bool guards_frames = false;
#endif
#if defined(__OPTIMIZE__)
inline constexpr bool is_optimised = true;
#else
inline constexpr bool is_optimised = false;
#endif

inline constexpr std::size_t node = is_optimised ? (guards_frames ? 4608 : 1024) : (guards_frames ? 12288 : 4096);
inline constexpr std::size_t operation = is_optimised ? (guards_frames ? 3584 : 1024) : (guards_frames ? 8192 : 3072);

// Is left for the core, sorting, memory and exceptions.
inline constexpr std::size_t reserve = guards_frames ? 65536 : 32768;

// A plan that needs no more than this is not checked.
inline constexpr std::size_t unchecked = guards_frames ? 65536 : 32768;

}  // namespace ov::sql_executor::stack_weights

#endif  // OV_SQL_EXECUTOR_SUPPORT_STACK_WEIGHTS_HPP_
