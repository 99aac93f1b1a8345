#include "ov_sql_executor/values/encoded_text.hpp"

#include <algorithm>
#include <cstring>
#include <limits>

namespace ov::sql_executor {

namespace {

constexpr std::uint64_t bytes_for(std::uint64_t bits) { return bits / 8 + (bits % 8 != 0 ? 1 : 0); }

}  // namespace

text_bits bit_count(text_view text) {
  const std::span<const std::uint8_t> bytes = text.bytes;
  std::uint64_t unused = 0;
  for (std::size_t position = 0; position < bytes.size(); ++position) {
    // A count that exceeds 64 bits is beyond every payload. It stays at the maximum.
    unused = unused > std::numeric_limits<std::uint64_t>::max() >> 7 ? std::numeric_limits<std::uint64_t>::max()
                                                                     : unused << 7 | (bytes[position] & 0x7F);
    if ((bytes[position] & 0x80) == 0) continue;
    const std::uint64_t available = std::uint64_t{8} * (bytes.size() - position - 1);
    if (unused >= available) return {0, {}};
    const std::uint64_t bits = available - unused;
    return {bits, bytes.subspan(position + 1, bytes_for(bits))};
  }
  return {0, {}};
}

std::strong_ordering compare_texts(text_view left, text_view right) {
  const text_bits a = bit_count(left);
  const text_bits b = bit_count(right);
  const std::size_t common = bytes_for(std::min(a.bits, b.bits));
  const int order = common == 0 ? 0 : std::memcmp(a.payload.data(), b.payload.data(), common);
  return order != 0 ? order <=> 0 : a.bits <=> b.bits;
}

bool text_starts_with(text_view text, text_view prefix) {
  const text_bits whole = bit_count(text);
  const text_bits start = bit_count(prefix);
  if (whole.bits < start.bits) return false;
  const std::size_t full_bytes = start.bits / 8;
  if (full_bytes != 0 && std::memcmp(whole.payload.data(), start.payload.data(), full_bytes) != 0) return false;
  const unsigned rest = start.bits % 8;
  return rest == 0 || ((whole.payload[full_bytes] ^ start.payload[full_bytes]) & (0xFF << (8 - rest)) & 0xFF) == 0;
}

}  // namespace ov::sql_executor
