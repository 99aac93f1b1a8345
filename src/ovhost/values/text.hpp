// The three forms of text a host meets: UTF-8 outside, UTF-16 in names and cells, the core's encoded form in rows.
#ifndef OVHOST_VALUES_TEXT_HPP_
#define OVHOST_VALUES_TEXT_HPP_

#include <optional>
#include <string>
#include <string_view>

#include "ov_sql_executor/values/tt_string.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// Gives nothing for bytes that are not UTF-8.
OVHOST_API std::optional<std::u16string> utf8_to_utf16(std::string_view text);

// Converts text that the program itself writes. Throws std::invalid_argument for bytes that are not UTF-8.
OVHOST_API std::u16string utf16(std::string_view text);

// Turns a surrogate without its other half into U+FFFD.
OVHOST_API std::string utf8(std::u16string_view text);

// Converts to the core's encoded form. Throws std::invalid_argument for a text with a zero unit, at which it would end.
OVHOST_API db_string::tt_string encode(std::u16string_view text);

// Converts back. Gives the empty text for bytes that are no encoded text.
OVHOST_API std::u16string decode(const db_string::tt_string& text);

// Folds case, as types are looked up.
OVHOST_API std::u16string base_form(std::u16string_view text);

}  // namespace ovhost

#endif  // OVHOST_VALUES_TEXT_HPP_
