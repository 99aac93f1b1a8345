#include "ovcoredb/text_code.hpp"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <limits>
#include <new>

namespace ovcoredb {
namespace {

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

class bit_writer {
 public:
  explicit bit_writer(std::uint8_t* out) : out_(out) {}

  void write(unit_code code) {
    pending_ = pending_ << code.length | code.bits;
    count_ += code.length;
    while (count_ >= 8) *out_++ = static_cast<std::uint8_t>(pending_ >> (count_ -= 8));
  }

  // Returns the number of unused bits.
  unsigned finish() {
    const unsigned unused = (8 - count_) % 8;
    if (unused != 0) *out_ = static_cast<std::uint8_t>(pending_ << unused);
    return unused;
  }

 private:
  std::uint8_t* out_;
  std::uint64_t pending_ = 0;
  unsigned count_ = 0;
};

class bit_reader {
 public:
  explicit bit_reader(text_payload payload) : next_(payload.bytes), left_(payload.bits) {}

  std::uint64_t left() const { return left_; }

  // The next 24 bits, without taking them; zeros follow the end.
  std::uint32_t peek() {
    while (count_ < 24) {
      pending_ = pending_ << 8 | (count_ < left_ ? *next_++ : 0u);
      count_ += 8;
    }
    return static_cast<std::uint32_t>(pending_ >> (count_ - 24)) & 0xFFFFFF;
  }

  bool take(unsigned bits) {
    if (bits > left_) return false;
    left_ -= bits;
    count_ -= bits;
    return true;
  }

 private:
  const std::uint8_t* next_;
  std::uint64_t left_;  // bits of the text that were not taken
  std::uint64_t pending_ = 0;
  unsigned count_ = 0;  // bits in pending_ that were not taken
};

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

bool is_ascii(std::u16string_view units) {
  return std::all_of(units.begin(), units.end(), [](char16_t unit) { return unit < 0x80; });
}

}  // namespace

std::size_t encoded_size(std::u16string_view units, text_end end) {
  std::size_t bits = end == text_end::upper_limit ? upper_limit_code.length : 0;
  for (const char16_t unit : units) bits += code_of(unit).length;
  return 1 + (bits + 7) / 8;
}

void encode_text(std::u16string_view units, text_end end, std::uint8_t* out) {
  bit_writer writer(out + 1);
  for (const char16_t unit : units) writer.write(code_of(unit));
  if (end == text_end::upper_limit) writer.write(upper_limit_code);
  *out = static_cast<std::uint8_t>(0x80 | writer.finish());
}

text_payload payload_of(std::span<const std::uint8_t> encoded) {
  constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max() >> 8;
  std::uint64_t unused = 0;
  for (std::size_t i = 0; i < encoded.size(); ++i) {
    unused = std::min(unused << 7 | (encoded[i] & 0x7Fu), huge);
    if ((encoded[i] & 0x80) == 0) continue;
    const std::uint64_t bits = (encoded.size() - i - 1) * 8;
    return {encoded.data() + i + 1, bits < unused ? 0 : bits - unused};
  }
  return {};
}

bool decode_text(std::span<const std::uint8_t> encoded, std::u16string& units) {
  units.clear();
  bit_reader reader(payload_of(encoded));
  while (reader.left() != 0) {
    const decoded_unit next = unit_of(reader.peek());
    if (next.length == 0 || !reader.take(next.length)) return false;
    units.push_back(static_cast<char16_t>(next.unit));
  }
  return true;
}

void fold_case(std::u16string& units) {
  if (is_ascii(units)) {
    for (char16_t& unit : units) unit = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
    return;
  }
  if (units.size() > std::numeric_limits<std::int32_t>::max() / 3) throw std::bad_alloc();
  std::u16string folded(units.size() * 3, u'\0');  // no unit folds to more than three
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = u_strFoldCase(folded.data(), static_cast<std::int32_t>(folded.size()), units.data(),
                                            static_cast<std::int32_t>(units.size()), U_FOLD_CASE_DEFAULT, &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  folded.resize(static_cast<std::size_t>(length));
  units = std::move(folded);
}

}  // namespace ovcoredb
