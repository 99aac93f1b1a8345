// Decodes texts (format: unit_code.hpp).
#ifndef OVCOREDB_TEXT_TEXT_DECODING_HPP_
#define OVCOREDB_TEXT_TEXT_DECODING_HPP_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace ovcoredb {

// base: case is folded, so that texts that differ only in case are equal.
enum class text_form : std::uint8_t { plain, base };

// The room that decode_text needs, in units. More than the text has.
std::size_t decoding_room(std::span<const std::uint8_t> encoded);

// Returned for bytes that are not an encoded text and, in base form, for texts that are not ASCII (see fold_case).
inline constexpr auto not_decoded = static_cast<std::size_t>(-1);

// Writes the decoded text and returns its length in units. May write anything after the text. Requires: room for
// decoding_room units.
std::size_t decode_text(std::span<const std::uint8_t> encoded, text_form form, char16_t* out);

// Writes as many units as there is room for and returns the length of the whole text. Writes nothing after the text.
std::size_t decode_text_within(std::span<const std::uint8_t> encoded, text_form form, std::span<char16_t> out);

// Replaces `units` by the decoded text. False when the bytes are not an encoded text; `units` then holds anything.
bool decode_text(std::span<const std::uint8_t> encoded, std::u16string& units);

}  // namespace ovcoredb

#endif  // OVCOREDB_TEXT_TEXT_DECODING_HPP_
