#include "allocations.hpp"

#include <cstdlib>
#include <new>

namespace {

// Of each thread, so that threads that are measured together share nothing here.
thread_local std::uint64_t count = 0;

}  // namespace

std::uint64_t bench::allocations() { return count; }

// The replacement is seen by the shared libraries, too.
void* operator new(std::size_t size) {
  ++count;
  if (void* memory = std::malloc(size != 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
