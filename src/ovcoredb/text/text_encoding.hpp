// Encodes UTF-16 texts (format: unit_code.hpp). Any sequence of units can be encoded, unpaired surrogates included, and
// is decoded unchanged. Equal texts have equal bytes.
#ifndef OVCOREDB_TEXT_TEXT_ENCODING_HPP_
#define OVCOREDB_TEXT_TEXT_ENCODING_HPP_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ovcoredb {

// text: the text itself. upper_limit: sorts above every text that begins with the given one, and below every other text
// that is greater.
enum class text_end : std::uint8_t { text, upper_limit };

// The number of bytes that encode_text writes.
std::size_t encoded_size(std::u16string_view units, text_end end);

// An upper bound of encoded_size that does not look at the units.
std::size_t max_encoded_size(std::u16string_view units, text_end end);

// Writes the encoded text and returns the number of bytes. Requires: room for encoded_size bytes.
std::size_t encode_text(std::u16string_view units, text_end end, std::uint8_t* out);

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_TEXT_ENCODING_HPP_
