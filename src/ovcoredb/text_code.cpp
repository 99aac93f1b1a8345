#include "ovcoredb/text_code.hpp"

#include <algorithm>
#include <limits>

#include "ovcoredb/unit_code.hpp"

namespace ovcoredb {
namespace {

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
  const auto behind = [encoded](std::size_t header, std::uint64_t unused) -> text_payload {
    const std::uint64_t bits = (encoded.size() - header) * 8;
    return {encoded.data() + header, bits < unused ? 0 : bits - unused};
  };
  if (!encoded.empty() && (encoded[0] & 0x80) != 0) return behind(1, encoded[0] & 0x7F);  // what this core writes
  constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max() >> 8;
  std::uint64_t unused = 0;
  for (std::size_t i = 0; i < encoded.size(); ++i) {
    unused = std::min(unused << 7 | (encoded[i] & 0x7Fu), huge);
    if ((encoded[i] & 0x80) != 0) return behind(i + 1, unused);
  }
  return {};
}

}  // namespace ovcoredb
