// Vectors of 16 bytes that hold slots or units, and how units are widened to 16 bits.
#ifndef OVCOREDB_TEXT_UNIT_VECTORS_HPP_
#define OVCOREDB_TEXT_UNIT_VECTORS_HPP_

#include <cstdint>

namespace ovcoredb {

// The same 16 bytes, divided differently.
using two_words [[gnu::vector_size(16)]] = std::uint64_t;
using four_halves [[gnu::vector_size(16)]] = std::uint32_t;
using eight_quarters [[gnu::vector_size(16)]] = std::uint16_t;
using sixteen_bytes [[gnu::vector_size(16)]] = std::uint8_t;
using sixteen_numbers [[gnu::vector_size(16)]] = std::int8_t;  // for comparisons, which are faster with a sign
using eight_units [[gnu::vector_size(16)]] = std::uint8_t;     // of 16 bits each

// Does not use std::memcpy, for which a compiler may take the vector apart.
inline void store(eight_units units, char16_t* out) {
  using unaligned [[gnu::vector_size(16), gnu::aligned(1), gnu::may_alias]] = std::uint8_t;
  *reinterpret_cast<unaligned*>(out) = units;
}

inline eight_units first_eight(sixteen_bytes units) {
  return __builtin_shufflevector(units, sixteen_bytes{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}
inline eight_units last_eight(sixteen_bytes units) {
  return __builtin_shufflevector(units, sixteen_bytes{}, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
}

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_UNIT_VECTORS_HPP_
