#ifndef TESTS_OWN_STACK_HPP_
#define TESTS_OWN_STACK_HPP_

#include <pthread.h>
#include <sys/mman.h>

#include <cstddef>
#include <functional>
#include <stdexcept>

namespace tests {

// The bytes from the start on that nobody has written to; the sanitizer takes them for somebody's locals.
__attribute__((no_sanitize("address"))) inline std::size_t count_untouched(const unsigned char* bytes,
                                                                           std::size_t size) {
  std::size_t count = 0;
  while (count < size && bytes[count] == 0) ++count;
  return count;
}

// Runs something on a thread with a stack of that size, which must not be exceeded; returns how much of it was used.
inline std::size_t run_on_stack(std::size_t size, std::function<void()> action) {
  constexpr std::size_t guard = 65536;
  void* const memory = mmap(nullptr, guard + size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED || mprotect(memory, guard, PROT_NONE) != 0) throw std::runtime_error("no memory");
  unsigned char* const stack = static_cast<unsigned char*>(memory) + guard;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstack(&attributes, stack, size);
  pthread_t thread{};
  const auto run = [](void* any) -> void* { return (*static_cast<std::function<void()>*>(any))(), nullptr; };
  const int failed = pthread_create(&thread, &attributes, run, &action);
  pthread_attr_destroy(&attributes);
  if (failed != 0) throw std::runtime_error("no thread");
  pthread_join(thread, nullptr);
  const std::size_t used = size - count_untouched(stack, size);
  munmap(memory, guard + size);
  return used;
}

}  // namespace tests

#endif  // TESTS_OWN_STACK_HPP_
