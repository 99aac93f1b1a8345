// Finds the payload of an encoded text (drawn in unit_code.hpp).
#ifndef OVCOREDB_TEXT_TEXT_PAYLOAD_HPP_
#define OVCOREDB_TEXT_TEXT_PAYLOAD_HPP_

#include <cstdint>
#include <span>

namespace ovcoredb {

struct text_payload {
  const std::uint8_t* bytes = nullptr;
  std::uint64_t bits = 0;  // without the unused bits
};

// For headers of several bytes, which this core reads and does not write. Out of line, which keeps decoders short.
[[gnu::noinline]] text_payload payload_after_long_header(std::span<const std::uint8_t> encoded);

// Bytes without a complete header have an empty payload.
inline text_payload payload_of(std::span<const std::uint8_t> encoded) {
  if (encoded.empty() || encoded[0] < 0x80) [[unlikely]] {
    return payload_after_long_header(encoded);
  }
  const std::uint64_t bits = (encoded.size() - 1) * 8;
  const std::uint64_t unused = encoded[0] & 0x7Fu;
  return {encoded.data() + 1, bits < unused ? 0 : bits - unused};
}

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_TEXT_PAYLOAD_HPP_
