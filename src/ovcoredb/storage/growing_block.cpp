#include "ovcoredb/storage/growing_block.hpp"

#include <sys/mman.h>

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace ovcoredb {

namespace {

constexpr std::size_t large_page = std::size_t{1} << 21;

bool is_large(std::size_t size) { return size >= large_page; }

std::size_t to_large_pages(std::size_t size) { return (size + large_page - 1) / large_page * large_page; }

// Maps memory that begins at a large page: maps one page too many and gives back what lies before and after. Null:
// there is none.
void* reserve(std::size_t size) {
  void* const around = mmap(nullptr, size + large_page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (around == MAP_FAILED) return nullptr;
  auto* const begin = static_cast<std::byte*>(around);
  const std::size_t before = (0 - reinterpret_cast<std::uintptr_t>(around)) % large_page;
  std::byte* const pages = begin + before;
  if (before != 0) munmap(begin, before);
  munmap(pages + size, large_page - before);
  static_cast<void>(madvise(pages, size, MADV_HUGEPAGE));  // only advice
  return pages;
}

// Moves a block of `size` bytes to larger, reserved memory and frees the old block. False: the pages cannot be moved.
bool move(void* from, std::size_t size, void* to) {
  if (is_large(size)) return mremap(from, size, size, MREMAP_MAYMOVE | MREMAP_FIXED, to) != MAP_FAILED;
  if (size != 0) std::memcpy(to, from, size);
  std::free(from);
  return true;
}

}  // namespace

growing_block::~growing_block() {
  if (is_large(size_)) {
    munmap(data_, size_);
  } else {
    std::free(data_);
  }
}

void growing_block::grow(std::size_t size) {
  assert(size > size_);
  const std::size_t grown = is_large(size) ? to_large_pages(size) : size;
  void* const block = is_large(grown) ? reserve(grown) : std::realloc(data_, grown);
  if (block == nullptr) throw std::bad_alloc();
  if (is_large(grown) && !move(data_, size_, block)) {
    munmap(block, grown);
    throw std::bad_alloc();
  }
  data_ = block;
  size_ = grown;
}

}  // namespace ovcoredb
