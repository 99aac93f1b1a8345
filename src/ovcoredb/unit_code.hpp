#ifndef OVCOREDB_UNIT_CODE_HPP_
#define OVCOREDB_UNIT_CODE_HPP_

#include <cstdint>

namespace ovcoredb {

// One unit becomes a prefix and the unit's low bits. A longer text continues where a shorter one ends, so that the
// bytes compare as the texts do, and a text is the beginning of another exactly when its bits are.
//
//    units        bits of the code
//    0000..001F   000 uuuuu
//    0020..003F   001 uuuuu
//    0040..005F   01 uuuuu
//    0060..007F   10 uuuuu
//    0080..087F   110 uuuuuuuuuuu            (unit - 0080)
//    0880..FFFF   1110 uuuuuuuuuuuuuuuu
//    upper limit  1111 1111 1111 1111 1111 1111, once, after the text
//
//    encoded text:  1vvvvvvv | payload bytes, most significant bit first | v zero bits up to the next whole byte
//
// The empty text is the header 0x80 alone.
struct unit_code {
  std::uint32_t bits;
  unsigned length;
};

constexpr unit_code code_of(char16_t unit) {
  const std::uint32_t u = unit;
  if (u < 0x40) return {u, 8};
  if (u < 0x60) return {0x20 | (u & 0x1F), 7};
  if (u < 0x80) return {0x40 | (u & 0x1F), 7};
  if (u < 0x880) return {0x3000 | (u - 0x80), 14};
  return {0xE0000 | u, 20};
}
constexpr unit_code upper_limit_code{0xFFFFFF, 24};

inline constexpr std::uint64_t least_code_length = 7;

// The unit whose code the uppermost of 24 bits are.
struct decoded_unit {
  std::uint32_t unit;
  unsigned length;  // 0: no such code
};

constexpr decoded_unit unit_of(std::uint32_t bits) {
  if (bits >> 22 == 0) return {bits >> 16, 8};
  if (bits >> 22 == 1) return {0x40 | (bits >> 17 & 0x1F), 7};
  if (bits >> 22 == 2) return {0x60 | (bits >> 17 & 0x1F), 7};
  if (bits >> 21 == 6) return {0x80 + (bits >> 10 & 0x7FF), 14};
  const std::uint32_t unit = bits >> 4 & 0xFFFF;
  if (bits >> 20 == 14 && unit >= 0x880) return {unit, 20};
  return {0, 0};
}

}  // namespace ovcoredb

#endif  // OVCOREDB_UNIT_CODE_HPP_
