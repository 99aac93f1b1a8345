#include "ovcoredb/text/text_code.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "ovcoredb/text/unit_code.hpp"

namespace ovcoredb {
namespace {

static_assert(std::endian::native == std::endian::little);

// The slots of eight units, 56 bits with the first uppermost, if they are printable ASCII; otherwise 0, which none are.
std::uint64_t eight_printable(const char16_t* units) {
  constexpr std::uint64_t each = 0x0001000100010001;
  std::uint64_t four[2];
  std::memcpy(four, units, sizeof four);
  const std::uint64_t beyond = (four[0] | four[1]) & each * 0xFF80;
  const auto above_controls = [](std::uint64_t word) { return (word >> 5 | word >> 6) & each; };
  if (beyond != 0 || (above_controls(four[0]) & above_controls(four[1])) != each) return 0;
  const auto packed = [](std::uint64_t word) {
    word -= each * printable_offset;
    return (word & 0x7F) << 21 | (word >> 16 & 0x7F) << 14 | (word >> 32 & 0x7F) << 7 | word >> 48;
  };
  return packed(four[0]) << 28 | packed(four[1]);
}

class bit_writer {
 public:
  explicit bit_writer(std::uint8_t* out) : out_(out) {}

  void write(unit_code code) {
    pending_ = pending_ << code.length | code.bits;
    count_ += code.length;
    while (count_ >= 8) *out_++ = static_cast<std::uint8_t>(pending_ >> (count_ -= 8));
  }

  // Seven whole bytes.
  void write_56(std::uint64_t bits) {
    const std::uint64_t all = __builtin_bswap64((pending_ << 56 | bits) << (8 - count_));
    std::memcpy(out_, &all, 7);
    out_ += 7;
    pending_ = bits;
  }

  // The last so many, fewer than 56.
  void write_last(std::uint64_t bits, std::uint64_t count) {
    pending_ = pending_ << count | (bits & ~(~std::uint64_t{0} << count));
    count_ += static_cast<unsigned>(count);
    while (count_ >= 8) *out_++ = static_cast<std::uint8_t>(pending_ >> (count_ -= 8));
  }

  // Returns the number of unused bits.
  unsigned finish() {
    const unsigned unused = (8 - count_) % 8;
    if (unused != 0) *out_++ = static_cast<std::uint8_t>(pending_ << unused);
    return unused;
  }

  // Behind the last byte, once all is finished.
  const std::uint8_t* end() const { return out_; }

 private:
  std::uint8_t* out_;
  std::uint64_t pending_ = 0;
  unsigned count_ = 0;
};

}  // namespace

std::size_t encoded_size(std::u16string_view units, text_end end) {
  std::size_t bits = end == text_end::upper_limit ? upper_limit_code.length : 0;
  for (std::size_t at = 0; at < units.size();) {
    if (units.size() - at >= 8 && eight_printable(units.data() + at) != 0) {
      bits += 56;
      at += 8;
    } else {
      bits += code_of(units[at++]).length;
    }
  }
  return 1 + (bits + 7) / 8;
}

std::size_t encoding_room(std::u16string_view units, text_end end) {
  const std::size_t bits = units.size() * longest_code + (end == text_end::upper_limit ? upper_limit_code.length : 0);
  return 1 + (bits + 7) / 8;
}

std::size_t encode_text(std::u16string_view units, text_end end, std::uint8_t* out) {
  bit_writer writer(out + 1);
  for (std::size_t at = 0; at < units.size();) {
    // Of fewer than eight that are left, those before them make up the number.
    const std::size_t left = std::min<std::size_t>(units.size() - at, 8);
    const std::uint64_t eight = units.size() >= 8 ? eight_printable(units.data() + at + left - 8) : 0;
    if (eight == 0) {
      writer.write(code_of(units[at++]));
    } else if (left == 8) {
      writer.write_56(eight);
      at += 8;
    } else {
      writer.write_last(eight, left * least_code_length);
      at += left;
    }
  }
  if (end == text_end::upper_limit) writer.write(upper_limit_code);
  *out = static_cast<std::uint8_t>(0x80 | writer.finish());
  return static_cast<std::size_t>(writer.end() - out);
}

// Each byte of the header has seven bits of the number of unused bits, and its last byte is marked.
text_payload payload_behind_long_header(std::span<const std::uint8_t> encoded) {
  constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max() >> 8;
  std::uint64_t unused = 0;
  for (std::size_t i = 0; i < encoded.size(); ++i) {
    unused = std::min(unused << 7 | (encoded[i] & 0x7Fu), huge);
    if ((encoded[i] & 0x80) == 0) continue;
    const std::uint64_t bits = (encoded.size() - (i + 1)) * 8;
    return {encoded.data() + i + 1, bits < unused ? 0 : bits - unused};
  }
  return {};
}

}  // namespace ovcoredb
