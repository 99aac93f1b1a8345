// Encoded text: an order-preserving, prefix-free bit code over UTF-16 code units, behind a one-byte header. Any
// sequence of units can be encoded, unpaired surrogates included, and comes back unchanged.
#ifndef OVCOREDB_TEXT_TEXT_CODE_HPP_
#define OVCOREDB_TEXT_TEXT_CODE_HPP_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace ovcoredb {

// text: the text itself. upper_limit: sorts above every text that begins with the given one, and below every other text
// that is greater.
enum class text_end : std::uint8_t { text, upper_limit };

// The number of bytes that encode_text writes; and no less, found without looking at the units.
std::size_t encoded_size(std::u16string_view units, text_end end);
std::size_t encoding_room(std::u16string_view units, text_end end);

// Returns how many bytes it wrote. Equal texts give equal bytes.
std::size_t encode_text(std::u16string_view units, text_end end, std::uint8_t* out);

// Where the bits of an encoded text lie. Bytes without a complete header hold no bits.
struct text_payload {
  const std::uint8_t* bytes = nullptr;
  std::uint64_t bits = 0;
};
text_payload payload_behind_long_header(std::span<const std::uint8_t> encoded);
inline text_payload payload_of(std::span<const std::uint8_t> encoded) {
  if (encoded.empty() || encoded[0] < 0x80) return payload_behind_long_header(encoded);
  const std::uint64_t bits = (encoded.size() - 1) * 8;
  const std::uint64_t unused = encoded[0] & 0x7Fu;
  return {encoded.data() + 1, bits < unused ? 0 : bits - unused};
}

// Base form: that in which texts that differ only in case are equal.
enum class text_form : std::uint8_t { plain, base };

// How many units decode_text may write into, which is more than the text has.
std::size_t decoding_room(std::span<const std::uint8_t> encoded);

// Writes the decoded text, with anything behind it, and returns its length. Not decoded are bytes that are no encoded
// text and, in base form, texts that are not ASCII.
inline constexpr auto not_decoded = static_cast<std::size_t>(-1);
std::size_t decode_text(std::span<const std::uint8_t> encoded, text_form form, char16_t* out);

// The same, but writes no more than there is room for, and nothing behind the text.
std::size_t decode_text_within(std::span<const std::uint8_t> encoded, text_form form, std::span<char16_t> out);

// Replaces `units` by the decoded text; false when the bytes are not an encoded text, `units` then holds anything.
bool decode_text(std::span<const std::uint8_t> encoded, std::u16string& units);

// Replaces `units` by its base form, in which texts that differ only in case are equal (full Unicode case folding).
void fold_case(std::u16string& units);

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_TEXT_CODE_HPP_
