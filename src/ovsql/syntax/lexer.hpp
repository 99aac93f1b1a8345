// Splits a text into words, literals and signs.
#ifndef OVSQL_SYNTAX_LEXER_HPP_
#define OVSQL_SYNTAX_LEXER_HPP_

#include <cstdint>
#include <string_view>

#include "ovsql/syntax/keyword.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

enum class token_kind : std::uint8_t {
  end,
  word,
  quoted_name,   // "a""b"
  text,          // 'it''s'
  escaped_text,  // E'a\nb'
  dollar_text,   // $$it's$$, $x$it's$x$
  binary,        // X'0a'
  number,
  question_mark,     // ?
  parameter_number,  // ?2, $2
  parameter_name,    // :name
  open,
  close,
  comma,
  semicolon,
  dot,
  star,
  plus,
  minus,
  slash,
  percent,
  equal,
  not_equal,
  less,
  at_most,
  greater,
  at_least,
  concatenate,
  starts_with,
  double_colon
};

struct token {
  token_kind kind = token_kind::end;
  keyword word = no_keyword;  // of a word
  place at{};
};

// Reads the token that begins at a byte or behind spaces and comments there. Behind the last one is an `end`.
// Throws ovsql::error of kind syntax for a byte that begins no token, a literal or a comment that does not end, a
// malformed number, and bytes of a literal or a name that are not UTF-8.
token next_token(std::string_view text, std::uint32_t from);

// Finds the semicolon that ends a statement, or the end of the text. Looks at no more than quotes and comments.
// Requires: no token begins before the byte and ends behind it.
std::uint32_t find_semicolon(std::string_view text, std::uint32_t from);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_LEXER_HPP_
