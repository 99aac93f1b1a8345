// Sixteen slots of a payload at once, for the units that have no more than a slot: printable ASCII, 0x20 to 0x7F.
#ifndef OVCOREDB_TEXT_PRINTABLE_SLOTS_HPP_
#define OVCOREDB_TEXT_PRINTABLE_SLOTS_HPP_

#include <bit>
#include <cstdint>
#include <cstring>

#include "ovcoredb/text/unit_code.hpp"
#include "ovcoredb/text/unit_vectors.hpp"

namespace ovcoredb {

// Spreads twice 56 bits over sixteen bytes of 7 bits, in order. Halves, quarters and then eighths change places, since
// the first slot is the uppermost in its word but comes first in the vector.
inline sixteen_bytes slots_of(two_words bits) {
  const auto halves = reinterpret_cast<four_halves>((bits >> 36) | (bits << 24 & 0x0FFFFFFF00000000));
  const auto quarters = reinterpret_cast<eight_quarters>(halves >> 14 | (halves & 0x3FFF) << 16);
  return reinterpret_cast<sixteen_bytes>(quarters >> 7 | (quarters & 0x7F) << 8);
}

// The units of printable slots. Other slots give 0x1F or bytes above 0x7F, which mean nothing.
inline sixteen_bytes units_of(sixteen_bytes slots) { return slots + std::uint8_t{printable_offset}; }

// Turns A to Z into a to z. Bytes above 0x7F count as negative, so that one comparison finds both ends of the range.
inline sixteen_bytes folded(sixteen_bytes units) {
  constexpr std::uint8_t greatest = 0x7F;
  const auto from_z = reinterpret_cast<sixteen_numbers>(units + std::uint8_t{greatest - 'Z'});
  const auto is_capital = from_z >= std::int8_t{greatest - ('Z' - 'A')};
  return units + (reinterpret_cast<sixteen_bytes>(is_capital) & std::uint8_t{'a' - 'A'});
}

// All ones in the bytes that are not printable units.
inline two_words others_among(sixteen_bytes units) {
  return reinterpret_cast<two_words>(reinterpret_cast<sixteen_numbers>(units) < std::int8_t{' '});
}

// How many printable units come before the first other.
inline std::uint64_t printable_count(sixteen_bytes units) {
  const two_words others = others_among(units);
  const auto before = [](std::uint64_t word) { return static_cast<std::uint64_t>(std::countr_zero(word)) / 8; };
  return others[0] != 0 ? before(others[0]) : 8 + before(others[1]);
}

// Whether all of up to eight slots in a word are printable, 1 to 0x60. After subtracting one, exactly the others have
// both upper bits set (0 borrows). `ones` has a 1 in each slot.
inline bool are_printable(std::uint64_t slots, std::uint64_t ones) {
  const std::uint64_t less = slots - ones;
  return (less & less << 1 & ones << 6) == 0;
}

#ifdef __x86_64__

inline sixteen_bytes load_sixteen(const std::uint8_t* bytes) {
  sixteen_bytes loaded;
  std::memcpy(&loaded, bytes, sizeof loaded);
  return loaded;
}

// The sixteen slots in the first fourteen of sixteen bytes. A slot lies in two neighbouring bytes: a multiplication
// brings it to the top of them, a shift down.
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

#endif

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_PRINTABLE_SLOTS_HPP_
