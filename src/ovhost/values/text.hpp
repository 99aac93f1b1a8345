// The three forms of text a host meets: UTF-8 outside, UTF-16 in names and cells, the core's encoded form in rows.
#ifndef OVHOST_VALUES_TEXT_HPP_
#define OVHOST_VALUES_TEXT_HPP_

#include <optional>
#include <string>
#include <string_view>

#include "ov_sql_executor/values/tt_string.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// Nothing if the bytes are not UTF-8.
OVHOST_API std::optional<std::u16string> utf8_to_utf16(std::string_view text);

// For text that the program itself writes. Throws std::invalid_argument if it is not UTF-8.
OVHOST_API std::u16string utf16(std::string_view text);

// A surrogate without its other half becomes U+FFFD.
OVHOST_API std::string utf8(std::u16string_view text);

// To the core's encoded form. Throws std::invalid_argument for a text with a zero unit, which would end it there.
OVHOST_API db_string::tt_string encode(std::u16string_view text);

// Back from it. Bytes that are no encoded text give the empty text.
OVHOST_API std::u16string decode(const db_string::tt_string& text);

// The text as types are looked up by: with case folded.
OVHOST_API std::u16string base_form(std::u16string_view text);

}  // namespace ovhost

#endif  // OVHOST_VALUES_TEXT_HPP_
