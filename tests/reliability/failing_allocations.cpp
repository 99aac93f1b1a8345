#include "reliability/failing_allocations.hpp"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace failing_allocations {

using core_shim::place, core_shim::repeat;

bool paused = false;
std::int64_t alive = 0;

namespace {

struct plan {
  std::uint64_t calls_left = 0;  // 0: nothing fails
  repeat how = repeat::once;
  place in = place::elsewhere;
  std::uint64_t failures = 0;
};

plan now;

bool is_to_fail() {
  if (now.calls_left == 0 || paused || core_shim::where() != now.in) return false;
  if (now.calls_left > 1) {
    --now.calls_left;
    return false;
  }
  if (now.how == repeat::once) now.calls_left = 0;
  ++now.failures;
  return true;
}

void* allocate(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) {
  if (is_to_fail()) throw std::bad_alloc();
  if (core_shim::where() == place::elsewhere) ++alive;
  return std::aligned_alloc(alignment, (size + alignment) / alignment * alignment);
}

// A caller that asks in this way goes on without memory: it is no failure of its own, but one of those from then on.
void* allocate_or_not(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) noexcept {
  const bool is_failing = now.failures != 0 && now.calls_left != 0 && core_shim::where() == now.in;
  const bool was_paused = std::exchange(paused, true);
  void* const memory = is_failing ? nullptr : allocate(size, alignment);
  paused = was_paused;
  return memory;
}

void release(void* memory) noexcept {
  if (memory != nullptr && core_shim::where() == place::elsewhere) --alive;
  std::free(memory);
}

}  // namespace

void fail(std::uint64_t k, repeat how, place in) { now = {k, how, in, 0}; }

std::uint64_t stop() { return std::exchange(now, {}).failures; }

}  // namespace failing_allocations

using failing_allocations::allocate, failing_allocations::allocate_or_not, failing_allocations::release;
using std::align_val_t, std::nothrow_t, std::size_t;

void* operator new(size_t size) { return allocate(size); }
void* operator new[](size_t size) { return allocate(size); }
void* operator new(size_t size, align_val_t alignment) { return allocate(size, static_cast<size_t>(alignment)); }
void* operator new[](size_t size, align_val_t alignment) { return allocate(size, static_cast<size_t>(alignment)); }
void* operator new(size_t size, const nothrow_t&) noexcept { return allocate_or_not(size); }
void* operator new[](size_t size, const nothrow_t&) noexcept { return allocate_or_not(size); }
void* operator new(size_t size, align_val_t at, const nothrow_t&) noexcept {
  return allocate_or_not(size, static_cast<size_t>(at));
}
void* operator new[](size_t size, align_val_t at, const nothrow_t&) noexcept {
  return allocate_or_not(size, static_cast<size_t>(at));
}

void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, size_t) noexcept { release(memory); }
void operator delete[](void* memory, size_t) noexcept { release(memory); }
void operator delete(void* memory, align_val_t) noexcept { release(memory); }
void operator delete[](void* memory, align_val_t) noexcept { release(memory); }
void operator delete(void* memory, size_t, align_val_t) noexcept { release(memory); }
void operator delete[](void* memory, size_t, align_val_t) noexcept { release(memory); }
void operator delete(void* memory, const nothrow_t&) noexcept { release(memory); }
void operator delete[](void* memory, const nothrow_t&) noexcept { release(memory); }
void operator delete(void* memory, align_val_t, const nothrow_t&) noexcept { release(memory); }
void operator delete[](void* memory, align_val_t, const nothrow_t&) noexcept { release(memory); }
