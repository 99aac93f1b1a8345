#include <algorithm>
#include <bit>
#include <cstring>

#include "ovcoredb/text_code.hpp"
#include "ovcoredb/unit_code.hpp"

namespace ovcoredb {
namespace {

static_assert(std::endian::native == std::endian::little);

// The payload's bits from one position on, most significant first; at least 57 of them count, zeros follow the end.
class bit_window {
 public:
  explicit bit_window(text_payload payload)
      : bytes_(payload.bytes), size_((payload.bits + 7) / 8), bits_(payload.bits) {}

  std::uint64_t left() const { return bits_ - at_; }
  void take(std::uint64_t bits) { at_ += bits; }

  std::uint64_t load() const {
    const std::uint64_t byte = at_ / 8;
    if (size_ - byte >= 8) return load_at(byte) << at_ % 8;
    // Near the end: the last eight bytes, and of those what has not been taken.
    if (size_ >= 8) return load_at(size_ - 8) << (at_ - (size_ - 8) * 8);
    std::uint64_t loaded = 0;
    std::memcpy(&loaded, bytes_, size_);
    return __builtin_bswap64(loaded) << at_;
  }

 private:
  std::uint64_t load_at(std::uint64_t byte) const {
    std::uint64_t loaded;
    std::memcpy(&loaded, bytes_ + byte, sizeof loaded);
    return __builtin_bswap64(loaded);
  }

  const std::uint8_t* bytes_;
  std::uint64_t size_;
  std::uint64_t bits_;
  std::uint64_t at_ = 0;
};

// Eight codes of 7 bits, the first in the uppermost byte, from the uppermost 56 bits of a window.
std::uint64_t spread_to_bytes(std::uint64_t window) {
  std::uint64_t codes = window >> 8;
  codes = (codes & 0x000000000FFFFFFF) | (codes & 0x00FFFFFFF0000000) << 4;
  codes = (codes & 0x00003FFF00003FFF) | (codes & 0x0FFFC0000FFFC000) << 2;
  return (codes & 0x007F007F007F007F) | (codes & 0x3F803F803F803F80) << 1;
}

// Bit 6 of each of the eight that does not begin like a code of 7 bits, with 01 or 10.
std::uint64_t other_codes(std::uint64_t codes) { return ~(codes ^ codes << 1) & 0x4040404040404040; }

using eight_bytes [[gnu::vector_size(8)]] = std::uint8_t;
using eight_units [[gnu::vector_size(16)]] = std::uint16_t;

// Writes eight units, the letters and some signs that have codes of 7 bits.
void write_short_codes(std::uint64_t codes, char16_t* out) {
  const std::uint64_t in_order = __builtin_bswap64(codes + 0x2020202020202020);
  eight_bytes units;
  std::memcpy(&units, &in_order, sizeof units);
  const auto wide = __builtin_convertvector(units, eight_units);
  std::memcpy(out, &wide, sizeof wide);
}

}  // namespace

std::size_t decoding_room(std::span<const std::uint8_t> encoded) {
  return encoded.size() * 8 / least_code_length + 8;  // eight units are written at once
}

const char16_t* decode_text(std::span<const std::uint8_t> encoded, char16_t* out) {
  bit_window window(payload_of(encoded));
  while (window.left() != 0) {
    const std::uint64_t codes = spread_to_bytes(window.load());
    write_short_codes(codes, out);
    const std::uint64_t others = other_codes(codes);
    if (others == 0 && window.left() >= 8 * least_code_length) {  // told apart so that the next load need not wait
      out += 8;
      window.take(8 * least_code_length);
      continue;
    }
    const auto before_others = static_cast<std::uint64_t>(std::countl_zero(others)) / 8;
    const std::uint64_t taken = std::min(before_others, window.left() / least_code_length);
    out += taken;
    window.take(taken * least_code_length);
    if (window.left() == 0) break;
    const decoded_unit next = unit_of(static_cast<std::uint32_t>(window.load() >> 40));
    if (next.length == 0 || next.length > window.left()) return nullptr;
    *out++ = static_cast<char16_t>(next.unit);
    window.take(next.length);
  }
  return out;
}

bool decode_text(std::span<const std::uint8_t> encoded, std::u16string& units) {
  units.resize(decoding_room(encoded));
  const char16_t* const end = decode_text(encoded, units.data());
  if (end == nullptr) return false;
  units.resize(static_cast<std::size_t>(end - units.data()));
  return true;
}

}  // namespace ovcoredb
