#include "ovcoredb/text/text_encoding.hpp"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "ovcoredb/text/bit_writer.hpp"
#include "ovcoredb/text/unit_code.hpp"

namespace ovcoredb {
namespace {

// The slots of eight units if all are printable ASCII: 56 bits, the first unit uppermost. Otherwise 0, which no eight
// slots are.
std::uint64_t eight_printable(const char16_t* units) {
  constexpr std::uint64_t each = 0x0001000100010001;
  std::uint64_t four[2];
  std::memcpy(four, units, sizeof four);
  const std::uint64_t above_ascii = (four[0] | four[1]) & each * 0xFF80;
  const auto not_controls = [](std::uint64_t word) { return (word >> 5 | word >> 6) & each; };
  if (above_ascii != 0 || (not_controls(four[0]) & not_controls(four[1])) != each) return 0;
  const auto packed = [](std::uint64_t word) {
    word -= each * printable_offset;
    return (word & 0x7F) << 21 | (word >> 16 & 0x7F) << 14 | (word >> 32 & 0x7F) << 7 | word >> 48;
  };
  return packed(four[0]) << 28 | packed(four[1]);
}

std::size_t bits_of_end(text_end end) { return end == text_end::upper_limit ? upper_limit_code.length : 0; }

std::size_t with_header(std::size_t bits) { return 1 + (bits + 7) / 8; }

}  // namespace

std::size_t encoded_size(std::u16string_view units, text_end end) {
  std::size_t bits = bits_of_end(end);
  for (std::size_t at = 0; at < units.size();) {
    if (units.size() - at >= 8 && eight_printable(units.data() + at) != 0) {
      bits += 56;
      at += 8;
    } else {
      bits += code_of(units[at++]).length;
    }
  }
  return with_header(bits);
}

std::size_t max_encoded_size(std::u16string_view units, text_end end) {
  return with_header(units.size() * longest_code + bits_of_end(end));
}

std::size_t encode_text(std::u16string_view units, text_end end, std::uint8_t* out) {
  bit_writer writer(out + 1);
  for (std::size_t at = 0; at < units.size();) {
    // Looks at eight units at a time. When fewer are left, it looks at the last eight and writes those that are left.
    const std::size_t left = std::min<std::size_t>(units.size() - at, 8);
    const std::uint64_t eight = units.size() >= 8 ? eight_printable(units.data() + at + left - 8) : 0;
    if (eight == 0) {
      writer.write(code_of(units[at++]));
    } else if (left == 8) {
      writer.write_56(eight);
      at += 8;
    } else {
      writer.write_lowest(eight, left * slot_length);
      at += left;
    }
  }
  if (end == text_end::upper_limit) writer.write(upper_limit_code);
  *out = static_cast<std::uint8_t>(0x80 | writer.finish());
  const auto size = static_cast<std::size_t>(writer.end() - out);
  assert(size == encoded_size(units, end));
  return size;
}

}  // namespace ovcoredb
