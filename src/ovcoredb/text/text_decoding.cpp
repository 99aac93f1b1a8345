#include <algorithm>
#include <bit>
#include <cstring>

#include "ovcoredb/text/decoded_units.hpp"
#include "ovcoredb/text/text_code.hpp"
#include "ovcoredb/text/unit_code.hpp"

namespace ovcoredb {
namespace {

static_assert(std::endian::native == std::endian::little);

using four_halves [[gnu::vector_size(16)]] = std::uint32_t;
using eight_quarters [[gnu::vector_size(16)]] = std::uint16_t;
using sixteen_numbers [[gnu::vector_size(16)]] = std::int8_t;  // the bytes as compared, which is faster with a sign

// The payload's bits from one position on, most significant first; zeros follow the end.
class bit_window {
 public:
  explicit bit_window(text_payload payload)
      : bytes_(payload.bytes), size_((payload.bits + 7) / 8), bits_(payload.bits) {}

  std::uint64_t left() const { return bits_ - at_; }
  void take(std::uint64_t bits) { at_ += bits; }

  // At least 57 bits count.
  std::uint64_t load() const { return load_from(at_); }

  // The next 56 bits and the 56 behind them.
  two_words load_two() const {
    const std::uint64_t byte = at_ / 8;
    if (size_ - byte >= 15) return load_two_at(bytes_ + byte) << at_ % 8;
    return two_words{load_from(at_), left() > 56 ? load_from(at_ + 56) : 0};
  }

  // All of it, before anything has been taken.
  std::span<const std::uint8_t> bytes() const { return {bytes_, size_}; }

 private:
  std::uint64_t load_from(std::uint64_t bit) const {
    const std::uint64_t byte = bit / 8;
    if (size_ - byte >= 8) return load_at(byte) << bit % 8;
    // Near the end: the last eight bytes, of which the first may be the header's, and of those what has not been taken.
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

  // All of them, fewer than seven, in two or three steps that may meet. Out of line, which keeps the rest short.
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

// The sixteen slots of 7 bits in twice 56 bits, in order: halves, quarters and then eighths change places.
sixteen_bytes slots_of(two_words bits) {
  const auto halves = reinterpret_cast<four_halves>((bits >> 36) | (bits << 24 & 0x0FFFFFFF00000000));
  const auto quarters = reinterpret_cast<eight_quarters>(halves >> 14 | (halves & 0x3FFF) << 16);
  return reinterpret_cast<sixteen_bytes>(quarters >> 7 | (quarters & 0x7F) << 8);
}

// The units of slots that are whole codes, each 0x20 to 0x7F; those of others mean nothing and are 0x1F or above 0x7F.
sixteen_bytes units_of(sixteen_bytes slots) { return slots + std::uint8_t{printable_offset}; }

// A to Z turned into a to z. Above 0x7F lie the negative numbers, so that one comparison finds both ends of a range.
sixteen_bytes folded(sixteen_bytes units) {
  constexpr std::uint8_t greatest = 0x7F;
  const auto from_z = reinterpret_cast<sixteen_numbers>(units + std::uint8_t{greatest - 'Z'});
  const auto is_capital = from_z >= std::int8_t{greatest - ('Z' - 'A')};
  return units + (reinterpret_cast<sixteen_bytes>(is_capital) & std::uint8_t{'a' - 'A'});
}

// All ones where the slot is not a whole code.
two_words others_among(sixteen_bytes units) {
  return reinterpret_cast<two_words>(reinterpret_cast<sixteen_numbers>(units) < std::int8_t{' '});
}

// How many units come before the first whose slot is not a whole code.
std::uint64_t printable_count(sixteen_bytes units) {
  const two_words others = others_among(units);
  const auto before = [](std::uint64_t word) { return static_cast<std::uint64_t>(std::countr_zero(word)) / 8; };
  return others[0] != 0 ? before(others[0]) : 8 + before(others[1]);
}

#ifdef __x86_64__

// Nearly every processor of this kind can put the bytes of a vector in any order, which compilers must not count on.
const bool has_shuffles = (__builtin_cpu_init(), __builtin_cpu_supports("ssse3") != 0);

sixteen_bytes load_sixteen(const std::uint8_t* bytes) {
  sixteen_bytes loaded;
  std::memcpy(&loaded, bytes, sizeof loaded);
  return loaded;
}

// The sixteen slots in the first fourteen of sixteen bytes. Each slot lies in two bytes that follow each other: there
// it is brought to the top by a multiplication, and then down.
[[gnu::target("ssse3")]] inline sixteen_bytes shuffled_slots(sixteen_bytes bytes) {
  constexpr eight_quarters to_top = {1 << 0, 1 << 7, 1 << 6, 1 << 5, 1 << 4, 1 << 3, 1 << 2, 1 << 1};
  const auto first = reinterpret_cast<eight_quarters>(
      __builtin_shufflevector(bytes, bytes, 1, 0, 1, 0, 2, 1, 3, 2, 4, 3, 5, 4, 6, 5, 7, 6));
  const auto last = reinterpret_cast<eight_quarters>(
      __builtin_shufflevector(bytes, bytes, 8, 7, 8, 7, 9, 8, 10, 9, 11, 10, 12, 11, 13, 12, 14, 13));
  return __builtin_shufflevector(reinterpret_cast<sixteen_bytes>(first * to_top >> 9),
                                 reinterpret_cast<sixteen_bytes>(last * to_top >> 9),  //
                                 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
}

// Puts sixteen units at a time from the beginning on while all of them are printable, and returns how many bits they
// took.
template <bool Fold, class Output>
[[gnu::target("ssse3")]] std::uint64_t put_printable(std::span<const std::uint8_t> bytes, Output& output) {
  Output to = output;  // in registers
  std::size_t at = 0;
  for (; bytes.size() - at >= sizeof(sixteen_bytes); at += 14) {
    const sixteen_bytes units = units_of(shuffled_slots(load_sixteen(bytes.data() + at)));
    const two_words others = others_among(units);
    if ((others[0] | others[1]) != 0) break;
    to.put(Fold ? folded(units) : units, 16);
  }
  output = to;
  return at * 8;
}

#endif

// Sixteen units at a time while they are printable ASCII. Fold: every unit of ASCII is folded; not_decoded, too, for a
// text with others.
template <bool Fold, class Output>
std::size_t decode(std::span<const std::uint8_t> encoded, Output output) {
  bit_window window(payload_of(encoded));
#ifdef __x86_64__
  if (window.left() > 16 * least_code_length && has_shuffles) {
    window.take(put_printable<Fold>(window.bytes(), output));
  }
#endif
  while (window.left() != 0) {
    const sixteen_bytes as_stored = units_of(slots_of(window.load_two()));
    const sixteen_bytes units = Fold ? folded(as_stored) : as_stored;
    const std::uint64_t printable = printable_count(as_stored);
    if (printable == 16 && window.left() >= 16 * least_code_length) {  // told apart so that the next load need not wait
      output.put(units, 16);
      window.take(16 * least_code_length);
      continue;
    }
    const std::uint64_t taken = std::min(printable, window.left() / least_code_length);
    output.put(units, taken);
    window.take(taken * least_code_length);
    if (window.left() == 0) break;
    const decoded_unit next = unit_of(static_cast<std::uint32_t>(window.load() >> 40));
    if (next.length == 0 || next.length > window.left()) return not_decoded;
    if (Fold && next.unit >= 0x80) return not_decoded;
    output.put(static_cast<char16_t>(next.unit));
    window.take(next.length);
  }
  return output.count();
}

// Whether all of up to eight slots are whole codes, 1 to 0x60: one less than that has not both upper bits, but one less
// than 0 has. `ones` has a 1 in each slot.
bool are_printable(std::uint64_t slots, std::uint64_t ones) {
  const std::uint64_t less = slots - ones;
  return (less & less << 1 & ones << 6) == 0;
}

// The number of units, without looking at each, if all are printable ASCII; not_decoded otherwise. Out of line, where
// it has the registers to itself.
[[gnu::noinline]] std::size_t count_printable(std::span<const std::uint8_t> encoded) {
  constexpr std::uint64_t ones = 0x0002'0408'1020'4081;
  bit_window window(payload_of(encoded));
  const std::uint64_t bits = window.left();
  for (; window.left() >= 56; window.take(56)) {
    if (!are_printable(window.load() >> 8, ones)) return not_decoded;
  }
  const std::uint64_t left = window.left();
  if (left == 0) return bits / least_code_length;
  const bool is_printable =
      left % least_code_length == 0 && are_printable(window.load() >> (64 - left), ones >> (56 - left));
  return is_printable ? bits / least_code_length : not_decoded;
}

template <class Output>
std::size_t decode(std::span<const std::uint8_t> encoded, text_form form, Output output) {
  return form == text_form::base ? decode<true>(encoded, output) : decode<false>(encoded, output);
}

}  // namespace

std::size_t decoding_room(std::span<const std::uint8_t> encoded) {
  // At least 8/7 units for each byte, and sixteen are written even where one follows.
  static_assert(least_code_length == 7);
  return encoded.size() + encoded.size() / 4 + 16;
}

std::size_t decode_text(std::span<const std::uint8_t> encoded, text_form form, char16_t* out) {
  return decode(encoded, form, roomy_output(out));
}

std::size_t decode_text_within(std::span<const std::uint8_t> encoded, text_form form, std::span<char16_t> out) {
  if (!out.empty()) return decode(encoded, form, bounded_output(out));
  const std::size_t count = count_printable(encoded);
  return count != not_decoded ? count : decode(encoded, form, counting_output());
}

bool decode_text(std::span<const std::uint8_t> encoded, std::u16string& units) {
  units.resize(decoding_room(encoded));
  const std::size_t count = decode_text(encoded, text_form::plain, units.data());
  if (count == not_decoded) return false;
  units.resize(count);
  return true;
}

}  // namespace ovcoredb
