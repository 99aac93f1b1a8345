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

// The same eight with A to Z turned into a to z. No byte is above 7F.
std::uint64_t fold_eight(std::uint64_t units) {
  const std::uint64_t from_a = units + 0x3F3F3F3F3F3F3F3F;    // the top bit of each from 41 on
  const std::uint64_t behind_z = units + 0x2525252525252525;  // from 5B on
  return units + ((from_a & ~behind_z & 0x8080808080808080) >> 2);
}

// Writes eight units, the letters and some signs that have codes of 7 bits.
template <bool Fold>
void write_short_codes(std::uint64_t codes, char16_t* out) {
  const std::uint64_t read = codes + 0x2020202020202020;
  const std::uint64_t in_order = __builtin_bswap64(Fold ? fold_eight(read & 0x7F7F7F7F7F7F7F7F) : read);
  eight_bytes units;
  std::memcpy(&units, &in_order, sizeof units);
  const auto wide = __builtin_convertvector(units, eight_units);
  std::memcpy(out, &wide, sizeof wide);
}

// Fold: every unit of ASCII is folded; null, too, for a text with others.
template <bool Fold>
const char16_t* decode(std::span<const std::uint8_t> encoded, char16_t* out) {
  bit_window window(payload_of(encoded));
  while (window.left() != 0) {
    const std::uint64_t loaded = window.load();
    const std::uint64_t codes = spread_to_bytes(loaded);
    write_short_codes<Fold>(codes, out);
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
    const std::uint64_t rest = taken < 8 ? loaded << taken * least_code_length : window.load();
    const bool is_byte = rest >> 62 == 0;  // a code of 8 bits, whole in what is loaded
    if (Fold && rest >> 62 == 3) return nullptr;
    const decoded_unit next = is_byte ? decoded_unit{static_cast<std::uint32_t>(rest >> 56), 8}
                                      : unit_of(static_cast<std::uint32_t>(window.load() >> 40));
    if (next.length == 0 || next.length > window.left()) return nullptr;
    *out++ = static_cast<char16_t>(next.unit);
    window.take(next.length);
  }
  return out;
}

}  // namespace

std::size_t decoding_room(std::span<const std::uint8_t> encoded) {
  return encoded.size() * 8 / least_code_length + 8;  // eight units are written at once
}

const char16_t* decode_text(std::span<const std::uint8_t> encoded, char16_t* out) {
  return decode<false>(encoded, out);
}

const char16_t* decode_folded_ascii(std::span<const std::uint8_t> encoded, char16_t* out) {
  return decode<true>(encoded, out);
}

bool decode_text(std::span<const std::uint8_t> encoded, std::u16string& units) {
  units.resize(decoding_room(encoded));
  const char16_t* const end = decode_text(encoded, units.data());
  if (end == nullptr) return false;
  units.resize(static_cast<std::size_t>(end - units.data()));
  return true;
}

}  // namespace ovcoredb
