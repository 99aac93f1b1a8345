// One block of memory that grows without being copied once it is large.
#ifndef OVCOREDB_STORAGE_GROWING_BLOCK_HPP_
#define OVCOREDB_STORAGE_GROWING_BLOCK_HPP_

#include <cstddef>
#include <utility>

namespace ovcoredb {

// A large block grows by moving its pages to another address, so that nothing is held twice. It asks for large pages,
// since columns are read in any order and a processor knows the addresses of a few thousand pages only. What is not
// used of a block takes no memory, except for the rest of its last page.
class growing_block {
 public:
  growing_block() = default;
  growing_block(growing_block&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
  growing_block& operator=(growing_block&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~growing_block();

  void* data() { return data_; }
  const void* data() const { return data_; }
  std::size_t size() const { return size_; }  // bytes

  // Makes it at least `size` bytes large. Requires: that is more than it has. Throws: std::bad_alloc, and is as before.
  void grow(std::size_t size);

 private:
  void* data_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_GROWING_BLOCK_HPP_
