// Memory that shares no line of the processor's cache with other memory: where one thread writes all the time, others
// that read beside it would wait for each write.
#ifndef OVCOREDB_STORAGE_OWN_LINES_HPP_
#define OVCOREDB_STORAGE_OWN_LINES_HPP_

#include <cstddef>
#include <new>

namespace ovcoredb {

inline constexpr std::size_t line_size = 128;  // two lines of 64 bytes, which processors fetch in pairs

template <class T>
struct own_lines_allocator {
  using value_type = T;

  own_lines_allocator() = default;
  template <class Other>
  own_lines_allocator(const own_lines_allocator<Other>& /*other*/) noexcept {}  // NOLINT: as allocators convert

  T* allocate(std::size_t count) {
    constexpr std::size_t element = sizeof(T);  // NOLINT(bugprone-sizeof-expression): of pointers, too
    if (count > (static_cast<std::size_t>(-1) - line_size) / element) throw std::bad_array_new_length();
    const std::size_t size = (count * element + line_size - 1) / line_size * line_size;
    return static_cast<T*>(::operator new (size, std::align_val_t{line_size}));
  }
  void deallocate(T* memory, std::size_t /*count*/) noexcept {
    ::operator delete (memory, std::align_val_t{line_size});
  }

  template <class Other>
  bool operator==(const own_lines_allocator<Other>& /*other*/) const noexcept {
    return true;
  }
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_OWN_LINES_HPP_
