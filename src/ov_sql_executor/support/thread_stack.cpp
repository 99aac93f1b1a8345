#include "ov_sql_executor/support/thread_stack.hpp"

#include <cstdint>

#if defined(_WIN32)
#include <intrin.h>
#include <windows.h>
#else
#include <pthread.h>
#endif

#include "ov_sql_executor/support/stack_weights.hpp"

namespace ov::sql_executor {

namespace {

constexpr std::size_t assumed_size = stack_weights::unchecked + stack_weights::reserve;

struct address_range {
  std::uintptr_t lowest;
  std::uintptr_t highest;
};

#if defined(_WIN32)

// Takes no address of a local variable: a sanitizer may keep those elsewhere.
std::uintptr_t stack_position() { return reinterpret_cast<std::uintptr_t>(_AddressOfReturnAddress()); }

address_range stack_of_thread() {
  ULONG_PTR lowest = 0;
  ULONG_PTR highest = 0;
  GetCurrentThreadStackLimits(&lowest, &highest);
  return {lowest, highest};
}

#else

std::uintptr_t stack_position() { return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)); }

address_range stack_of_thread() {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return {};
  void* start = nullptr;
  std::size_t size = 0;
  std::size_t guard = 0;  // some systems count it in
  pthread_attr_getstack(&attributes, &start, &size);
  pthread_attr_getguardsize(&attributes, &guard);
  pthread_attr_destroy(&attributes);
  const auto lowest = reinterpret_cast<std::uintptr_t>(start);
  return {lowest + guard, lowest + size};
}

#endif

// The stack of this thread, as far as it is known; nothing at first. Thread-local, since the next thread may get a
// smaller stack in the same place.
thread_local address_range thread_range = {1, 0};

bool is_in_range(std::uintptr_t position) {
  return position >= thread_range.lowest && position <= thread_range.highest;
}

bool has_left(std::size_t bytes) {
  const std::uintptr_t now = stack_position();
  return is_in_range(now) && now - thread_range.lowest >= stack_weights::reserve &&
         now - thread_range.lowest - stack_weights::reserve >= bytes;
}

}  // namespace

bool has_stack(std::size_t bytes) {
  if (has_left(bytes)) return true;
  thread_range = stack_of_thread();
  const std::uintptr_t now = stack_position();
  if (!is_in_range(now)) thread_range = {now - assumed_size, now};  // a stack that the host made
  return has_left(bytes);
}

}  // namespace ov::sql_executor
