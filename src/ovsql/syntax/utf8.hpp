#ifndef OVSQL_SYNTAX_UTF8_HPP_
#define OVSQL_SYNTAX_UTF8_HPP_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ovsql::syntax {

// Finds the first byte that belongs to no character of UTF-8; npos if there is none.
std::size_t find_invalid_utf8(std::string_view text);

// Appends a character. Requires: a number up to 0x10FFFF that is no surrogate.
void append_utf8(std::string& to, std::uint32_t character);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_UTF8_HPP_
