// A growing array of elements that can be moved as bytes.
#ifndef OVCOREDB_STORAGE_RAW_ARRAY_HPP_
#define OVCOREDB_STORAGE_RAW_ARRAY_HPP_

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <type_traits>

#include "ovcoredb/storage/growing_block.hpp"

namespace ovcoredb {

template <class T>
class raw_array {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  const T* data() const { return static_cast<const T*>(block_.data()); }
  T* data() { return static_cast<T*>(block_.data()); }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const T& operator[](std::size_t position) const {
    assert(position < size_);
    return data()[position];
  }
  T& operator[](std::size_t position) {
    assert(position < size_);
    return data()[position];
  }

  void push_back(T value) { *extend(1) = value; }

  // Appends `count` elements for the caller to write, and returns the first. When it throws, nothing has changed.
  T* extend(std::size_t count) {
    const std::size_t needed = (size_ + count) * sizeof(T);
    if (needed > block_.size()) block_.grow(std::max(needed + least_spare, 2 * block_.size()));
    T* const first = data() + size_;
    size_ += count;
    return first;
  }

  void truncate(std::size_t size) {
    assert(size <= size_);
    size_ = size;
  }

 private:
  static constexpr std::size_t least_spare = 64;  // bytes

  growing_block block_;
  std::size_t size_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_RAW_ARRAY_HPP_
