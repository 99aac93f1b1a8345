// What quoted names and literals stand for.
#ifndef OVSQL_SYNTAX_LITERALS_HPP_
#define OVSQL_SYNTAX_LITERALS_HPP_

#include <string_view>

#include "ovsql/syntax/lexer.hpp"
#include "ovsql/syntax/memory.hpp"

namespace ovsql::syntax {

// A name or a text without its quotes. Points into the statement where nothing had to be replaced.
// Requires: a token of kind word, quoted_name, text, escaped_text or dollar_text. Throws ovsql::error of kind syntax
// for a malformed escape.
std::string_view unquoted(std::string_view text, const token& of, memory& in);

// The bytes of X'0a1b'. Throws ovsql::error of kind syntax for what is no pair of hexadecimal digits.
std::string_view decoded_binary(std::string_view text, const token& of, memory& in);

// A name in lower case, as far as its letters are those of ASCII.
std::string_view lower_case(std::string_view name, memory& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_LITERALS_HPP_
