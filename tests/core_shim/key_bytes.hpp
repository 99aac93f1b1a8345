#ifndef TESTS_CORE_SHIM_KEY_BYTES_HPP_
#define TESTS_CORE_SHIM_KEY_BYTES_HPP_

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace core_shim {

// Copies a key with its end mark and the zero bytes up to a multiple of eight. A byte with the top bits 001 opens a
// number or a first chunk; only the column's type tells which. Throws std::logic_error for a key of another shape.
inline std::vector<std::uint8_t> key_bytes(const std::uint8_t* key, std::string_view shape) {
  const auto expect = [](bool holds) {
    if (!holds) throw std::logic_error("a key that is not well formed");
  };
  const std::uint8_t* end = key;
  for (const char column : shape) {
    if (*end == 0x60) {
      ++end;
    } else if (column == 'n') {
      expect(*end == 0x28);
      end += 9;
    } else {
      expect((*end & 0xE0) == 0x20);
      for (end += 1 + (*end & 0x1F); *end != 0x80; end += 1 + *end) expect(*end >= 1 && *end <= 31);
      ++end;
    }
  }
  expect(*end++ == 0xC0);
  while ((end - key) % 8 != 0) expect(*end++ == 0);
  return {key, end};
}

}  // namespace core_shim

#endif  // TESTS_CORE_SHIM_KEY_BYTES_HPP_
