// A growing array of unsigned 64-bit numbers. All take as many bytes as the largest so far needs. A larger one widens
// all elements, which happens seven times at most.
#ifndef OVCOREDB_STORAGE_NARROW_ARRAY_HPP_
#define OVCOREDB_STORAGE_NARROW_ARRAY_HPP_

#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ovcoredb/storage/raw_array.hpp"

namespace ovcoredb {

class narrow_array {
 public:
  std::size_t size() const { return size_; }

  // Reads eight bytes and keeps those of the element. The slack makes that safe for the last one.
  std::uint64_t operator[](std::size_t position) const {
    assert(position < size_);
    std::uint64_t value;
    std::memcpy(&value, bytes_.data() + position * width_, sizeof value);
    return value & mask_;
  }

  void push_back(std::uint64_t value) {
    if (value > mask_ || bytes_.empty()) widen((static_cast<std::size_t>(std::bit_width(value | 1)) + 7) / 8);
    bytes_.extend(width_);
    std::memcpy(bytes_.data() + size_ * width_, &value, sizeof value);
    ++size_;
  }

  void truncate(std::size_t size) {
    assert(size <= size_);
    if (bytes_.empty()) return;
    size_ = size;
    bytes_.truncate(size * width_ + slack);
  }

 private:
  static constexpr std::size_t slack = 7;  // bytes after the last element

  // From the last element to the first, so that none is overwritten before it is read.
  void widen(std::size_t width) {
    assert(width <= sizeof(std::uint64_t));
    bytes_.extend(size_ * width + slack - bytes_.size());
    for (std::size_t i = size_; i-- != 0;) {
      const std::uint64_t value = (*this)[i];
      std::memcpy(bytes_.data() + i * width, &value, width);
    }
    width_ = width;
    mask_ = ~std::uint64_t{0} >> (64 - 8 * width);
  }

  raw_array<std::uint8_t> bytes_;
  std::size_t width_ = 1;   // bytes per element
  std::uint64_t mask_ = 0;  // the largest number of that width; 0 before the first element
  std::size_t size_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_NARROW_ARRAY_HPP_
