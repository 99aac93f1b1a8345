#include "ov_sql_executor/errors/utf8.hpp"

#include <cstdint>
#include <stdexcept>

namespace {

bool is_high_surrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_surrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

[[noreturn]] void reject() { throw std::range_error("bad conversion"); }

// Reads the code point at position and moves past it.
std::uint32_t take_code_point(std::wstring_view text, std::size_t& position) {
  const auto unit = static_cast<std::uint32_t>(text[position++]);
  if (unit > 0xFFFF || is_low_surrogate(unit)) reject();
  if (!is_high_surrogate(unit)) return unit;
  if (position == text.size()) reject();
  const auto low = static_cast<std::uint32_t>(text[position++]);
  if (!is_low_surrogate(low)) reject();
  return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
}

void append(std::string& out, std::uint32_t lead_bits, std::uint32_t bits) {
  out.push_back(static_cast<char>(lead_bits | bits));
}

void append_code_point(std::string& out, std::uint32_t point) {
  const auto tail = [&](unsigned shift) { append(out, 0x80, (point >> shift) & 0x3F); };
  if (point < 0x80) {
    append(out, 0, point);
  } else if (point < 0x800) {
    append(out, 0xC0, point >> 6);
    tail(0);
  } else if (point < 0x10000) {
    append(out, 0xE0, point >> 12);
    tail(6);
    tail(0);
  } else {
    append(out, 0xF0, point >> 18);
    tail(12);
    tail(6);
    tail(0);
  }
}

}  // namespace

std::string ucs2_to_utf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) append_code_point(out, take_code_point(text, position));
  return out;
}
