#include "ovcoredb/text/text_decoding.hpp"

#include <algorithm>

#include "ovcoredb/text/bit_reader.hpp"
#include "ovcoredb/text/printable_slots.hpp"
#include "ovcoredb/text/unit_code.hpp"
#include "ovcoredb/text/unit_output.hpp"

namespace ovcoredb {
namespace {

#ifdef __x86_64__

// Whether the processor can put the bytes of a vector in any order. Nearly all can, but compilers must not count on it.
const bool has_shuffles = (__builtin_cpu_init(), __builtin_cpu_supports("ssse3") != 0);

// Decodes the beginning of a payload, sixteen units at a time while all of them are printable. Returns how many bits
// they took.
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

// Decodes sixteen units at a time while they are printable ASCII, and single units between them. Fold: folds the case
// of ASCII; a text with other units is not_decoded.
template <bool Fold, class Output>
std::size_t decode(std::span<const std::uint8_t> encoded, Output output) {
  bit_reader reader(payload_of(encoded));
#ifdef __x86_64__
  if (reader.left() > 16 * slot_length && has_shuffles) {
    reader.skip(put_printable<Fold>(reader.bytes(), output));
  }
#endif
  while (reader.left() != 0) {
    const sixteen_bytes as_stored = units_of(slots_of(reader.load_two()));
    const sixteen_bytes units = Fold ? folded(as_stored) : as_stored;
    const std::uint64_t printable = printable_count(as_stored);
    if (printable == 16 &&
        reader.left() >= 16 * slot_length) {  // a case of its own, so that the next load need not wait
      output.put(units, 16);
      reader.skip(16 * slot_length);
      continue;
    }
    const std::uint64_t taken = std::min(printable, reader.left() / slot_length);
    output.put(units, taken);
    reader.skip(taken * slot_length);
    if (reader.left() == 0) break;
    const decoded_unit next = unit_of(static_cast<std::uint32_t>(reader.load() >> 40));
    if (next.length == 0 || next.length > reader.left()) return not_decoded;
    if (Fold && next.unit >= 0x80) return not_decoded;
    output.put(static_cast<char16_t>(next.unit));
    reader.skip(next.length);
  }
  return output.count();
}

// The number of units of a text of printable ASCII, found without decoding; otherwise not_decoded. Out of line, where
// it has the registers to itself.
[[gnu::noinline]] std::size_t count_printable(std::span<const std::uint8_t> encoded) {
  constexpr std::uint64_t ones = 0x0002'0408'1020'4081;
  bit_reader reader(payload_of(encoded));
  const std::uint64_t bits = reader.left();
  for (; reader.left() >= 56; reader.skip(56)) {
    if (!are_printable(reader.load() >> 8, ones)) return not_decoded;
  }
  const std::uint64_t left = reader.left();
  if (left == 0) return bits / slot_length;
  const bool is_printable = left % slot_length == 0 && are_printable(reader.load() >> (64 - left), ones >> (56 - left));
  return is_printable ? bits / slot_length : not_decoded;
}

template <class Output>
std::size_t decode(std::span<const std::uint8_t> encoded, text_form form, Output output) {
  return form == text_form::base ? decode<true>(encoded, output) : decode<false>(encoded, output);
}

}  // namespace

std::size_t decoding_room(std::span<const std::uint8_t> encoded) {
  // A byte holds at most 8/7 units, and sixteen units are written even where one follows.
  static_assert(slot_length == 7);
  return encoded.size() + encoded.size() / 4 + 16;
}

std::size_t decode_text(std::span<const std::uint8_t> encoded, text_form form, char16_t* out) {
  return decode(encoded, form, unbounded_output(out));
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
