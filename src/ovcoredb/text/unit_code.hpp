// The bit code of one UTF-16 code unit, and the format of encoded texts that it makes.
//
//    encoded text     header | payload
//    header           one byte 1vvvvvvv: v bits at the end of the payload are not used; they are zero
//    payload          the codes of the units, back to back, most significant bit first
//    code of a unit   a slot of 7 bits and, outside printable ASCII, more bits after it
//
//    units          slot        bits of the code
//    0000..001F     0           12
//    0020..007F     1..96        7
//    0080..087F     97..112     14
//    0880..FFFF     113..120    20
//    upper limit    127         24, all ones; stands once, after the text
//
// For example, "a" is slot 0x42 = 1000010 with one bit unused, the bytes 81 84. The empty text is the header 80 alone.
//
// No code begins another, and greater units have greater codes. So payloads compare as their texts do, and a text
// begins another exactly if its bits do.
#ifndef OVCOREDB_TEXT_UNIT_CODE_HPP_
#define OVCOREDB_TEXT_UNIT_CODE_HPP_

#include <cstdint>

namespace ovcoredb {

struct unit_code {
  std::uint32_t bits;
  unsigned length;  // in bits
};

inline constexpr std::uint32_t printable_offset = 0x1F;  // added to the slot of a printable unit gives the unit
inline constexpr std::uint32_t first_of_14_bits = 97U << 7;
inline constexpr std::uint32_t first_of_20_bits = 113U << 13;
inline constexpr std::uint32_t units_of_20_bits = 0x10000 - 0x880;

inline constexpr std::uint64_t slot_length = 7;  // also that of the shortest code
inline constexpr std::uint64_t longest_code = 20;

constexpr unit_code code_of(char16_t unit) {
  const std::uint32_t u = unit;
  if (u < 0x20) return {u, 12};
  if (u < 0x80) return {u - printable_offset, 7};
  if (u < 0x880) return {first_of_14_bits + (u - 0x80), 14};
  return {first_of_20_bits + (u - 0x880), 20};
}
constexpr unit_code upper_limit_code{0xFFFFFF, 24};

struct decoded_unit {
  std::uint32_t unit;
  unsigned length;  // of the code, in bits; 0: there is no such code
};

// Decodes the unit at the top of 24 bits.
constexpr decoded_unit unit_of(std::uint32_t bits) {
  const std::uint32_t slot = bits >> 17;
  if (slot == 0) return {bits >> 12, 12};
  if (slot < 97) return {slot + printable_offset, 7};
  if (slot < 113) return {0x80 + (bits >> 10) - first_of_14_bits, 14};
  const std::uint32_t above_first = (bits >> 4) - first_of_20_bits;
  if (above_first < units_of_20_bits) return {0x880 + above_first, 20};
  return {0, 0};
}

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_UNIT_CODE_HPP_
