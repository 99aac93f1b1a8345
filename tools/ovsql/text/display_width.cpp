#include "text/display_width.hpp"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace shell {
namespace {

constexpr std::string_view ellipsis = "…";

// The vowels and final consonants that join the syllable before them.
bool is_joining_hangul(UChar32 character) { return character >= 0x1160 && character <= 0x11FF; }

bool takes_no_room(UChar32 character) {
  const auto type = u_charType(character);
  return type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR || type == U_CONTROL_CHAR ||
         is_joining_hangul(character);
}

std::size_t width_of(UChar32 character) {
  if (character < 0) return 1;
  if (takes_no_room(character)) return 0;
  const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

// Moves behind the character at a byte and returns its width.
std::size_t take_character(std::string_view utf8, std::size_t& at) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
  UChar32 character = 0;
  U8_NEXT(bytes, at, utf8.size(), character);
  return width_of(character);
}

bool is_printable_ascii(char byte) { return byte >= ' ' && byte <= '~'; }

}  // namespace

std::size_t display_width(std::string_view utf8) {
  if (std::all_of(utf8.begin(), utf8.end(), is_printable_ascii)) return utf8.size();
  std::size_t width = 0;
  for (std::size_t at = 0; at < utf8.size();) width += take_character(utf8, at);
  return width;
}

std::string cut_to_width(std::string_view utf8, std::size_t most) {
  if (display_width(utf8) <= most) return std::string(utf8);
  std::size_t end = 0;
  for (std::size_t at = 0, width = 0;;) {
    width += take_character(utf8, at);
    if (width + 1 > most) break;
    end = at;
  }
  return std::string(utf8.substr(0, end)).append(ellipsis);
}

}  // namespace shell
