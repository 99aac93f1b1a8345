#include "ovsql/syntax/utf8.hpp"

namespace ovsql::syntax {
namespace {

// How many bytes a character has by its first; 0 where none begins.
std::size_t length_by(unsigned char first) {
  if (first < 0x80) return 1;
  if (first < 0xC2) return 0;
  if (first < 0xE0) return 2;
  if (first < 0xF0) return 3;
  return first < 0xF5 ? 4 : 0;
}

// Whether the second byte excludes overlong forms, surrogates and what lies above the last character.
bool fits(unsigned char first, unsigned char second) {
  if (first == 0xE0) return second >= 0xA0;
  if (first == 0xED) return second < 0xA0;
  if (first == 0xF0) return second >= 0x90;
  return first != 0xF4 || second < 0x90;
}

}  // namespace

std::size_t find_invalid_utf8(std::string_view text) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  for (std::size_t at = 0; at != text.size();) {
    const std::size_t length = length_by(byte(at));
    if (length == 0 || length > text.size() - at) return at;
    for (std::size_t i = 1; i < length; ++i) {
      if ((byte(at + i) & 0xC0U) != 0x80U) return at;
    }
    if (length > 2 && !fits(byte(at), byte(at + 1))) return at;
    at += length;
  }
  return std::string_view::npos;
}

void append_utf8(std::string& to, std::uint32_t character) {
  if (character < 0x80) {
    to += static_cast<char>(character);
    return;
  }
  const unsigned further = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  constexpr unsigned marks[] = {0, 0xC0, 0xE0, 0xF0};
  to += static_cast<char>(marks[further] | (character >> (6 * further)));
  for (unsigned left = further; left != 0; --left) {
    to += static_cast<char>(0x80U | ((character >> (6 * (left - 1))) & 0x3FU));
  }
}

}  // namespace ovsql::syntax
