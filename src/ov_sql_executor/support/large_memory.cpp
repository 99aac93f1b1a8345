#include "ov_sql_executor/support/large_memory.hpp"

#if defined(__linux__)
#include <sys/mman.h>
#endif

#include <algorithm>

namespace ov::sql_executor {

namespace {

constexpr std::size_t large_page = std::size_t{1} << 21;
constexpr std::size_t small_page = std::size_t{1} << 12;

std::align_val_t alignment_of(std::size_t size, std::size_t alignment) {
  return std::align_val_t{size < large_page ? alignment : std::max(alignment, large_page)};
}

bool is_ordinary(std::align_val_t alignment) {
  return static_cast<std::size_t>(alignment) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__;
}

// Gives advice only: the pages stay small where the system does not take it.
void ask_for_large_pages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) {
#if defined(__linux__)
  if (size >= large_page) static_cast<void>(madvise(memory, size / small_page * small_page, MADV_HUGEPAGE));
#endif
}

class large_memory_resource final : public std::pmr::memory_resource {
 private:
  void* do_allocate(std::size_t size, std::size_t alignment) override { return allocate_large(size, alignment); }
  void do_deallocate(void* memory, std::size_t size, std::size_t alignment) override {
    free_large(memory, size, alignment);
  }
  bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override { return this == &other; }
};

}  // namespace

void* allocate_large(std::size_t size, std::size_t alignment) {
  const std::align_val_t aligned = alignment_of(size, alignment);
  if (is_ordinary(aligned)) return ::operator new(size);
  void* const memory = ::operator new(size, aligned);
  ask_for_large_pages(memory, size);
  return memory;
}

void free_large(void* memory, std::size_t size, std::size_t alignment) noexcept {
  const std::align_val_t aligned = alignment_of(size, alignment);
  if (is_ordinary(aligned)) {
    ::operator delete(memory);
  } else {
    ::operator delete(memory, aligned);
  }
}

std::pmr::memory_resource* large_memory() {
  static large_memory_resource resource;
  return &resource;
}

}  // namespace ov::sql_executor
