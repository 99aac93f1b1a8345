// Reads the bits of a payload.
#ifndef OVCOREDB_TEXT_BIT_READER_HPP_
#define OVCOREDB_TEXT_BIT_READER_HPP_

#include <bit>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <span>

#include "ovcoredb/text/text_payload.hpp"
#include "ovcoredb/text/unit_vectors.hpp"

namespace ovcoredb {

static_assert(std::endian::native == std::endian::little);

// Stands at one bit of the payload: at_ <= bits_. What is loaded begins there, with the next bit uppermost; zeros
// follow the end of the payload.
class bit_reader {
 public:
  explicit bit_reader(text_payload payload)
      : bytes_(payload.bytes), size_((payload.bits + 7) / 8), bits_(payload.bits) {}

  std::uint64_t left() const { return bits_ - at_; }
  void skip(std::uint64_t bits) {
    assert(bits <= left());
    at_ += bits;
  }

  // The next 57 bits, and some more that mean nothing. Requires: bits are left.
  std::uint64_t load() const { return load_from(at_); }

  // The next 56 bits and the 56 after them. Requires: bits are left.
  two_words load_two() const {
    const std::uint64_t byte = at_ / 8;
    if (size_ - byte >= 15) return load_two_at(bytes_ + byte) << at_ % 8;
    return two_words{load_from(at_), left() > 56 ? load_from(at_ + 56) : 0};
  }

  // The whole payload.
  std::span<const std::uint8_t> bytes() const { return {bytes_, size_}; }

 private:
  std::uint64_t load_from(std::uint64_t bit) const {
    assert(bit < bits_);
    const std::uint64_t byte = bit / 8;
    if (size_ - byte >= 8) return load_at(byte) << bit % 8;
    // Near the end, loads the last eight bytes and drops what has been read. The first may be the header's last byte.
    if (size_ >= 7) return load_eight(bytes_ + size_ - 8) << (bit + 64 - size_ * 8);
    return load_few() << bit;
  }

  std::uint64_t load_at(std::uint64_t byte) const { return load_eight(bytes_ + byte); }
  static two_words load_two_at(const std::uint8_t* bytes) {
    return two_words{load_eight(bytes), load_eight(bytes + 7)};
  }
  static std::uint64_t load_eight(const std::uint8_t* bytes) {
    std::uint64_t loaded;
    std::memcpy(&loaded, bytes, sizeof loaded);
    return __builtin_bswap64(loaded);
  }

  // Loads a payload of 1 to 6 bytes in two or three steps that may overlap. Out of line, which keeps the rest short.
  [[gnu::noinline]] std::uint64_t load_few() const {
    assert(size_ >= 1 && size_ < 7);
    const std::uint64_t last = size_ - 1;
    if (size_ >= 4) return load_four(0) << 32 | load_four(size_ - 4) << (64 - size_ * 8);
    const auto load_one = [this](std::uint64_t byte) { return std::uint64_t{bytes_[byte]} << (56 - byte * 8); };
    return load_one(0) | load_one(last / 2) | load_one(last);
  }
  std::uint64_t load_four(std::uint64_t byte) const {
    std::uint32_t loaded;
    std::memcpy(&loaded, bytes_ + byte, sizeof loaded);
    return __builtin_bswap32(loaded);
  }

  const std::uint8_t* bytes_;
  std::uint64_t size_;
  std::uint64_t bits_;
  std::uint64_t at_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_BIT_READER_HPP_
