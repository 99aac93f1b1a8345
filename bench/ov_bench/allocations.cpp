#include "allocations.hpp"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

// Threads of DuckDB's allocate, too, but only while it is opened: an allocation may go uncounted there, and no other
// engine pays for counting them all.
std::atomic<std::uint64_t> count{0};

}  // namespace

std::uint64_t bench::allocations() { return count; }

// The replacement is seen by the shared libraries, too.
void* operator new(std::size_t size) {
  count.store(count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
  if (void* memory = std::malloc(size != 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
