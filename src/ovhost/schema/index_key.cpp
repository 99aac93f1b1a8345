#include "ovhost/schema/index_key.hpp"

#include <algorithm>
#include <span>

#include "ovhost/values/text.hpp"

namespace ovhost {
namespace {

constexpr std::uint8_t number_mark = 0x28;
constexpr std::uint8_t text_mark = 0x20;
constexpr std::uint8_t text_end = 0x80;
constexpr std::uint8_t key_end = 0xC0;
constexpr std::size_t chunk_length = 31;
constexpr std::uint64_t sign_bit = std::uint64_t{1} << 63;

// Returns the bytes after the header, which ends with the first byte whose top bit is set.
std::span<const std::uint8_t> payload_of(const db_string::tt_string& text) {
  const std::span bytes(text.data(), text.size());
  const auto last = std::find_if(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return (byte & 0x80) != 0; });
  return last == bytes.end() ? std::span<const std::uint8_t>() : std::span(last + 1, bytes.end());
}

}  // namespace

index_key& index_key::add_number(std::uint64_t number) {
  components_.push_back(number_mark);
  for (int shift = 56; shift >= 0; shift -= 8) components_.push_back(static_cast<std::uint8_t>(number >> shift));
  return *this;
}

index_key& index_key::add_number(std::int64_t number) {
  return add_number(static_cast<std::uint64_t>(number) ^ sign_bit);
}

index_key& index_key::add_text(std::u16string_view text) {
  const db_string::tt_string encoded = encode(text);
  std::span<const std::uint8_t> rest = payload_of(encoded);
  std::uint8_t mark = text_mark;
  do {
    const auto chunk = rest.first(std::min(rest.size(), chunk_length));
    components_.push_back(static_cast<std::uint8_t>(mark | chunk.size()));
    components_.insert(components_.end(), chunk.begin(), chunk.end());
    rest = rest.subspan(chunk.size());
    mark = 0;
  } while (!rest.empty());
  components_.push_back(text_end);
  return *this;
}

std::vector<std::uint8_t> index_key::bytes() const {
  std::vector<std::uint8_t> key = components_;
  key.push_back(key_end);
  key.resize((key.size() + 7) / 8 * 8);
  return key;
}

}  // namespace ovhost
