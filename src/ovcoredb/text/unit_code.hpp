#ifndef OVCOREDB_TEXT_UNIT_CODE_HPP_
#define OVCOREDB_TEXT_UNIT_CODE_HPP_

#include <cstdint>

namespace ovcoredb {

// One unit becomes a slot of 7 bits and, outside printable ASCII, some of the unit's bits behind it. A longer text
// continues where a shorter one ends, so that the bytes compare as the texts do, and a text is the beginning of another
// exactly when its bits are.
//
//    units        slot      bits of the code in all
//    0000..001F     0       12
//    0020..007F     1..96    7
//    0080..087F    97..112  14
//    0880..FFFF   113..120  20
//    upper limit  127       24, all ones, once, after the text
//
//    encoded text:  1vvvvvvv | payload bytes, most significant bit first | v zero bits up to the next whole byte
//
// The empty text is the header 0x80 alone.
struct unit_code {
  std::uint32_t bits;
  unsigned length;
};

inline constexpr std::uint32_t printable_offset = 0x1F;  // from a slot of 7 bits alone to its unit
inline constexpr std::uint32_t first_of_14_bits = 97U << 7;
inline constexpr std::uint32_t first_of_20_bits = 113U << 13;
inline constexpr std::uint32_t units_of_20_bits = 0x10000 - 0x880;

constexpr unit_code code_of(char16_t unit) {
  const std::uint32_t u = unit;
  if (u < 0x20) return {u, 12};
  if (u < 0x80) return {u - printable_offset, 7};
  if (u < 0x880) return {first_of_14_bits + (u - 0x80), 14};
  return {first_of_20_bits + (u - 0x880), 20};
}
constexpr unit_code upper_limit_code{0xFFFFFF, 24};

inline constexpr std::uint64_t least_code_length = 7;
inline constexpr std::uint64_t longest_code = 20;

// The unit whose code the uppermost of 24 bits are.
struct decoded_unit {
  std::uint32_t unit;
  unsigned length;  // 0: no such code
};

constexpr decoded_unit unit_of(std::uint32_t bits) {
  const std::uint32_t slot = bits >> 17;
  if (slot == 0) return {bits >> 12, 12};
  if (slot < 97) return {slot + printable_offset, 7};
  if (slot < 113) return {0x80 + (bits >> 10) - first_of_14_bits, 14};
  const std::uint32_t behind_first = (bits >> 4) - first_of_20_bits;
  if (behind_first < units_of_20_bits) return {0x880 + behind_first, 20};
  return {0, 0};
}

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_UNIT_CODE_HPP_
