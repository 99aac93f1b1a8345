// Memory for what grows with the input and is read in any order: hash tables, states of groups, keys to sort.
#ifndef OV_SQL_EXECUTOR_SUPPORT_LARGE_MEMORY_HPP_
#define OV_SQL_EXECUTOR_SUPPORT_LARGE_MEMORY_HPP_

#include <cstddef>
#include <memory_resource>
#include <new>
#include <utility>
#include <vector>

namespace ov::sql_executor {

// Like operator new and delete, but large blocks use huge pages where available, to save TLB misses. Throws
// std::bad_alloc.
void* allocate_large(std::size_t size, std::size_t alignment);
void free_large(void* memory, std::size_t size, std::size_t alignment) noexcept;

// Allocates as allocate_large does. Valid until: the process ends.
std::pmr::memory_resource* large_memory();

// Hints to the processor that memory will be read soon. Reads nothing.
inline void prefetch_memory(const void* place) { __builtin_prefetch(place); }

template <class T>
struct large_allocator {
  using value_type = T;

  large_allocator() = default;
  template <class U>
  large_allocator(const large_allocator<U>& /*other*/) {}  // NOLINT(google-explicit-constructor): containers rebind

  T* allocate(std::size_t count) {
    if (count > std::size_t(-1) / 2 / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T*>(allocate_large(count * sizeof(T), alignof(T)));
  }
  void deallocate(T* memory, std::size_t count) noexcept { free_large(memory, count * sizeof(T), alignof(T)); }

  // Leaves numbers unset that a resize adds: the caller is about to set them, and each pass over them costs time.
  template <class U>
  void construct(U* at) {
    ::new (static_cast<void*>(at)) U;
  }
  template <class U, class... Arguments>
  void construct(U* at, Arguments&&... arguments) {
    ::new (static_cast<void*>(at)) U(std::forward<Arguments>(arguments)...);
  }

  bool operator==(const large_allocator&) const = default;
};

template <class T>
using large_vector = std::vector<T, large_allocator<T>>;

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_SUPPORT_LARGE_MEMORY_HPP_
