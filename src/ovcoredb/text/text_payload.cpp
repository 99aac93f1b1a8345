#include "ovcoredb/text/text_payload.hpp"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace ovcoredb {

// Each byte holds seven bits of the number of unused bits, the most significant first. The top bit marks the last byte.
text_payload payload_after_long_header(std::span<const std::uint8_t> encoded) {
  constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max() >> 8;
  std::uint64_t unused = 0;
  for (std::size_t i = 0; i < encoded.size(); ++i) {
    unused = std::min(unused << 7 | (encoded[i] & 0x7Fu), huge);
    if ((encoded[i] & 0x80) == 0) continue;
    const std::uint64_t bits = (encoded.size() - (i + 1)) * 8;
    return {encoded.data() + i + 1, bits < unused ? 0 : bits - unused};
  }
  return {};
}

}  // namespace ovcoredb
