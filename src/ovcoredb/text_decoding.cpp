#include <algorithm>
#include <bit>
#include <cstring>

#include "ovcoredb/text_code.hpp"
#include "ovcoredb/unit_code.hpp"

namespace ovcoredb {
namespace {

static_assert(std::endian::native == std::endian::little);

using two_words [[gnu::vector_size(16)]] = std::uint64_t;
using eight_bytes [[gnu::vector_size(8)]] = std::uint8_t;
using eight_units [[gnu::vector_size(16)]] = std::uint16_t;

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
    return load_few() << at_;
  }

  // The next 56 bits and the 56 behind them, if there are as many bytes.
  bool has_two() const { return size_ - at_ / 8 >= 15; }
  two_words load_two() const { return two_words{load_at(at_ / 8), load_at(at_ / 8 + 7)} << at_ % 8; }

 private:
  std::uint64_t load_at(std::uint64_t byte) const {
    std::uint64_t loaded;
    std::memcpy(&loaded, bytes_ + byte, sizeof loaded);
    return __builtin_bswap64(loaded);
  }

  // All of them, fewer than eight, in two or three steps that may meet. Out of line, which keeps the rest short.
  [[gnu::noinline]] std::uint64_t load_few() const {
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

constexpr std::uint64_t in_each_byte(std::uint64_t byte) { return 0x0101010101010101 * byte; }

// Eight slots of 7 bits, the first in the uppermost byte, from the uppermost 56 bits of a window. Words: one or two.
template <class Words>
Words spread_to_bytes(Words window) {
  Words slots = window >> 8;
  slots = (slots & 0x000000000FFFFFFF) | (slots & 0x00FFFFFFF0000000) << 4;
  slots = (slots & 0x00003FFF00003FFF) | (slots & 0x0FFFC0000FFFC000) << 2;
  return (slots & 0x007F007F007F007F) | (slots & 0x3F803F803F803F80) << 1;
}

// The top bit of each slot that is not a whole code. The sums stay within their bytes.
template <class Words>
Words other_slots(Words slots) {
  return ((slots + in_each_byte(printable_offset)) | ~(slots + in_each_byte(0x7F))) & in_each_byte(0x80);
}

// The units of slots that are whole codes; with Fold, A to Z turned into a to z. No byte is above 7F.
template <bool Fold, class Words>
Words units_of(Words slots) {
  const Words units = slots + in_each_byte(printable_offset);
  if constexpr (!Fold) return units;
  const Words from_a = units + in_each_byte(0x80 - 'A');
  const Words behind_z = units + in_each_byte(0x80 - 'Z' - 1);
  return units + ((from_a & ~behind_z & in_each_byte(0x80)) >> 2);
}

// The first unit is in the uppermost byte.
void write_eight(std::uint64_t bytes, char16_t* out) {
  const std::uint64_t in_order = __builtin_bswap64(bytes);
  eight_bytes units;
  std::memcpy(&units, &in_order, sizeof units);
  const auto wide = __builtin_convertvector(units, eight_units);
  std::memcpy(out, &wide, sizeof wide);
}

// Reads sixteen units at a time while they are printable ASCII.
template <bool Fold>
char16_t* decode_printable(bit_window& window, char16_t* out) {
  while (window.has_two()) {
    const two_words slots = spread_to_bytes(window.load_two());
    const two_words others = other_slots(slots);
    if ((others[0] | others[1]) != 0) break;
    const two_words units = units_of<Fold>(slots);
    write_eight(units[0], out);
    write_eight(units[1], out + 8);
    window.take(16 * least_code_length);
    out += 16;
  }
  return out;
}

// Fold: every unit of ASCII is folded; null, too, for a text with others.
template <bool Fold>
const char16_t* decode(std::span<const std::uint8_t> encoded, char16_t* out) {
  bit_window window(payload_of(encoded));
  out = decode_printable<Fold>(window, out);
  while (window.left() != 0) {
    const std::uint64_t loaded = window.load();
    const std::uint64_t slots = spread_to_bytes(loaded);
    write_eight(units_of<Fold>(slots & in_each_byte(0x7F)), out);
    const std::uint64_t others = other_slots(slots);
    if (others == 0 && window.left() >= 8 * least_code_length) {  // told apart so that the next load need not wait
      out += 8;
      window.take(8 * least_code_length);
      continue;
    }
    const auto printable = static_cast<std::uint64_t>(std::countl_zero(others)) / 8;
    const bool all_there = printable * least_code_length <= window.left();
    const std::uint64_t taken = all_there ? printable : window.left() / least_code_length;
    out += taken;
    window.take(taken * least_code_length);
    if (window.left() == 0) break;
    const decoded_unit next = unit_of(static_cast<std::uint32_t>(window.load() >> 40));
    if (next.length == 0 || next.length > window.left()) return nullptr;
    if (Fold && next.unit >= 0x80) return nullptr;
    *out++ = static_cast<char16_t>(next.unit);
    window.take(next.length);
  }
  return out;
}

}  // namespace

std::size_t decoding_room(std::span<const std::uint8_t> encoded) {
  // At least 8/7 units for each byte, and eight are written even where one follows.
  static_assert(least_code_length == 7);
  return encoded.size() + encoded.size() / 4 + 8;
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
