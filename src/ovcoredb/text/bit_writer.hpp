// Writes the bits of a payload.
#ifndef OVCOREDB_TEXT_BIT_WRITER_HPP_
#define OVCOREDB_TEXT_BIT_WRITER_HPP_

#include <bit>
#include <cassert>
#include <cstdint>
#include <cstring>

#include "ovcoredb/text/unit_code.hpp"

namespace ovcoredb {

static_assert(std::endian::native == std::endian::little);

// Whole bytes are written at once. The lowest count_ bits of pending_ wait for the rest of their byte, at most 7 of
// them between two calls.
class bit_writer {
 public:
  explicit bit_writer(std::uint8_t* out) : out_(out) {}

  void write(unit_code code) {
    pending_ = pending_ << code.length | code.bits;
    count_ += code.length;
    write_whole_bytes();
  }

  void write_56(std::uint64_t bits) {
    assert(bits >> 56 == 0);
    const std::uint64_t all = __builtin_bswap64((pending_ << 56 | bits) << (8 - count_));
    std::memcpy(out_, &all, 7);
    out_ += 7;
    pending_ = bits;
  }

  // Writes the lowest `count` bits, fewer than 56.
  void write_lowest(std::uint64_t bits, std::uint64_t count) {
    assert(count < 56);
    pending_ = pending_ << count | (bits & ~(~std::uint64_t{0} << count));
    count_ += static_cast<unsigned>(count);
    write_whole_bytes();
  }

  // Fills up the last byte with zeros and returns how many.
  unsigned finish() {
    const unsigned unused = (8 - count_) % 8;
    if (unused != 0) *out_++ = static_cast<std::uint8_t>(pending_ << unused);
    return unused;
  }

  // After the last byte. Requires: finish was called.
  const std::uint8_t* end() const { return out_; }

 private:
  void write_whole_bytes() {
    while (count_ >= 8) *out_++ = static_cast<std::uint8_t>(pending_ >> (count_ -= 8));
  }

  std::uint8_t* out_;
  std::uint64_t pending_ = 0;
  unsigned count_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_BIT_WRITER_HPP_
