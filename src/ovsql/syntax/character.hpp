// The kinds of bytes in a statement.
#ifndef OVSQL_SYNTAX_CHARACTER_HPP_
#define OVSQL_SYNTAX_CHARACTER_HPP_

#include <array>
#include <cstdint>

namespace ovsql::syntax {

enum : std::uint8_t { space_byte = 1, digit_byte = 2, name_begin = 4, name_part = 8 };

inline constexpr std::array<std::uint8_t, 256> byte_kinds = [] {
  std::array<std::uint8_t, 256> kinds{};
  for (const unsigned char each : {' ', '\t', '\n', '\r', '\f', '\v'}) kinds[each] = space_byte;
  for (unsigned each = '0'; each <= '9'; ++each) kinds[each] = digit_byte | name_part;
  for (unsigned each = 'a'; each <= 'z'; ++each) kinds[each] = kinds[each - 32] = name_begin | name_part;
  for (unsigned each = 0x80; each <= 0xFF; ++each) kinds[each] = name_begin | name_part;
  kinds['_'] = name_begin | name_part;
  kinds['$'] = name_part;
  return kinds;
}();

inline bool is_byte(char byte, unsigned kinds) { return (byte_kinds[static_cast<unsigned char>(byte)] & kinds) != 0; }

// The value of a hexadecimal digit; 16 for any other byte.
constexpr unsigned hex_value(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  const char lower = static_cast<char>(digit | 0x20);
  return lower >= 'a' && lower <= 'f' ? static_cast<unsigned>(lower - 'a' + 10) : 16;
}

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_CHARACTER_HPP_
