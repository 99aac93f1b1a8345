#include "ovsql/syntax/lexer.hpp"

#include <algorithm>
#include <cstddef>
#include <string>

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/character.hpp"
#include "ovsql/syntax/utf8.hpp"

namespace ovsql::syntax {
namespace {

constexpr std::size_t nowhere = std::string_view::npos;

[[noreturn]] void fail(const std::string& message, std::size_t position) {
  throw error(error_kind::syntax, message, position);
}

char at(std::string_view text, std::size_t position) { return position < text.size() ? text[position] : '\0'; }

// Each of these returns where something ends that begins at a byte; nowhere if it does not end.

std::size_t end_of_comment(std::string_view text, std::size_t from) {
  std::size_t depth = 1;
  for (std::size_t next = from + 2;;) {
    next = text.find_first_of("/*", next);
    if (next == nowhere || next + 1 >= text.size()) return nowhere;
    const bool opens = text[next] == '/' && text[next + 1] == '*';
    const bool closes = text[next] == '*' && text[next + 1] == '/';
    next += opens || closes ? 2 : 1;
    if (opens) ++depth;
    if (closes && --depth == 0) return next;
  }
}

// A doubled quote does not end it.
std::size_t end_of_quoted(std::string_view text, std::size_t from) {
  const char quote = text[from];
  for (std::size_t next = from + 1;;) {
    next = text.find(quote, next);
    if (next == nowhere) return nowhere;
    if (at(text, next + 1) != quote) return next + 1;
    next += 2;
  }
}

// From the quote of E'...'; a quote behind a backslash does not end it, either.
std::size_t end_of_escaped(std::string_view text, std::size_t from) {
  for (std::size_t next = from + 1;;) {
    next = text.find_first_of("'\\", next);
    if (next == nowhere) return nowhere;
    if (text[next] == '\'' && at(text, next + 1) != '\'') return next + 1;
    next += 2;
  }
}

// How long the mark is that begins a text between dollars: $$ or $mark$; 0 if there is none.
std::size_t dollar_mark(std::string_view text, std::size_t from) {
  std::size_t next = from + 1;
  if (at(text, next) != '$' && !is_byte(at(text, next), name_begin)) return 0;
  while (next < text.size() && text[next] != '$' && is_byte(text[next], name_part)) ++next;
  return at(text, next) == '$' ? next + 1 - from : 0;
}

std::size_t end_of_dollar_text(std::string_view text, std::size_t from, std::size_t mark) {
  const std::size_t next = text.find(text.substr(from, mark), from + mark);
  return next == nowhere ? nowhere : next + mark;
}

std::size_t end_of_line(std::string_view text, std::size_t from) {
  const std::size_t end = text.find('\n', from);
  return end == nowhere ? text.size() : end;
}

// Skips spaces and comments.
std::size_t skip_spaces(std::string_view text, std::size_t from) {
  while (from < text.size()) {
    const char next = text[from];
    if (is_byte(next, space_byte)) {
      ++from;
    } else if (next == '-' && at(text, from + 1) == '-') {
      from = end_of_line(text, from);
    } else if (next == '/' && at(text, from + 1) == '*') {
      const std::size_t end = end_of_comment(text, from);
      if (end == nowhere) fail("the comment that begins here has no end", from);
      from = end;
    } else {
      break;
    }
  }
  return from;
}

place place_of(std::size_t begin, std::size_t end) {
  return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)};
}

void require_characters(std::string_view text, std::size_t begin, std::size_t end) {
  const std::string_view part = text.substr(begin, end - begin);
  const std::size_t zero = part.find('\0');
  if (zero != nowhere) fail("a NUL byte cannot be part of a text or a name", begin + zero);
  const std::size_t bad = find_invalid_utf8(part);
  if (bad != nowhere) fail("this byte is not valid UTF-8", begin + bad);
}

token quoted(token_kind kind, std::string_view text, std::size_t begin, std::size_t end) {
  if (end == nowhere) {
    const bool is_name = kind == token_kind::quoted_name;
    fail(std::string("the ") + (is_name ? "name" : "text") + " that begins here has no closing quote", begin);
  }
  require_characters(text, begin, end);
  if (kind == token_kind::quoted_name && end - begin == 2) fail("a name cannot be empty", begin);
  return {kind, no_keyword, place_of(begin, end)};
}

token word(std::string_view text, std::size_t begin) {
  std::uint32_t hash = 0;
  unsigned bits = 0;
  std::size_t end = begin;
  for (; end < text.size() && is_byte(text[end], name_part); ++end) {
    hash = add_to_hash(hash, text[end]);
    bits |= static_cast<unsigned char>(text[end]);
  }
  if (bits >= 0x80) require_characters(text, begin, end);
  return {token_kind::word, find_keyword(text.substr(begin, end - begin), hash), place_of(begin, end)};
}

std::size_t skip_digits(std::string_view text, std::size_t from) {
  while (from < text.size() && is_byte(text[from], digit_byte)) ++from;
  return from;
}

token number(std::string_view text, std::size_t begin) {
  std::size_t end = skip_digits(text, begin);
  if (at(text, end) == '.') end = skip_digits(text, end + 1);
  if ((at(text, end) | 0x20) == 'e') {
    const std::size_t digits = end + (at(text, end + 1) == '+' || at(text, end + 1) == '-' ? 2 : 1);
    end = skip_digits(text, digits);
    if (end == digits) fail("the number that begins here has no digits in its exponent", begin);
  }
  if (end < text.size() && is_byte(text[end], name_part)) {
    fail("a number ends here, and \"" + std::string(1, text[end]) + "\" cannot follow it", end);
  }
  if (at(text, end) == '.') fail("the number that begins here has a second point", begin);
  return {token_kind::number, no_keyword, place_of(begin, end)};
}

token numbered_parameter(std::string_view text, std::size_t begin, token_kind without_digits) {
  const std::size_t end = skip_digits(text, begin + 1);
  return {end == begin + 1 ? without_digits : token_kind::parameter_number, no_keyword, place_of(begin, end)};
}

token named_parameter(std::string_view text, std::size_t begin) {
  if (!is_byte(at(text, begin + 1), name_begin)) fail("\":\" is followed by no name of a parameter", begin);
  return {token_kind::parameter_name, no_keyword, place_of(begin, word(text, begin + 1).at.end)};
}

token dollar(std::string_view text, std::size_t begin) {
  if (is_byte(at(text, begin + 1), digit_byte)) {
    return numbered_parameter(text, begin, token_kind::parameter_number);
  }
  const std::size_t mark = dollar_mark(text, begin);
  if (mark == 0) fail("\"$\" is followed by no number of a parameter", begin);
  return quoted(token_kind::dollar_text, text, begin, end_of_dollar_text(text, begin, mark));
}

token sign(token_kind kind, std::size_t begin, std::size_t length = 1) {
  return {kind, no_keyword, place_of(begin, begin + length)};
}

[[noreturn]] void refuse_bits(std::size_t begin) {
  throw error(error_kind::unsupported, "there are no operators on bits, powers or patterns", begin);
}

[[noreturn]] void fail_at_byte(std::string_view text, std::size_t begin) {
  const char first = text[begin];
  if (first == '\0') fail("a NUL byte cannot be part of a statement", begin);
  if (first == '`' || first == '[') fail("a name is quoted with double quotes", begin);
  if (first == '!') fail("\"!\" is no operator; NOT and <> are", begin);
  if (std::string_view("&|~#^@").find(first) != nowhere) refuse_bits(begin);
  const bool shown = first > ' ' && first != 0x7F;
  fail(shown ? "\"" + std::string(1, first) + "\" has no meaning here" : "this control character has no meaning",
       begin);
}

token less_or_greater(std::string_view text, std::size_t begin) {
  const bool is_less = text[begin] == '<';
  const char second = at(text, begin + 1);
  if (second == '=') return sign(is_less ? token_kind::at_most : token_kind::at_least, begin, 2);
  if (second == text[begin]) refuse_bits(begin);
  if (is_less && second == '>') return sign(token_kind::not_equal, begin, 2);
  return sign(is_less ? token_kind::less : token_kind::greater, begin);
}

// Signs of two characters, and those that may begin something else.
token longer_sign(std::string_view text, std::size_t begin) {
  const char first = text[begin];
  const char second = at(text, begin + 1);
  if (first == '<' || first == '>') return less_or_greater(text, begin);
  if (first == '!' && second == '=') return sign(token_kind::not_equal, begin, 2);
  if (first == '|' && second == '|') return sign(token_kind::concatenate, begin, 2);
  if (first == '^' && second == '@') return sign(token_kind::starts_with, begin, 2);
  if (first == ':' && second == ':') return sign(token_kind::double_colon, begin, 2);
  if (first == ':') return named_parameter(text, begin);
  if (first == '?') return numbered_parameter(text, begin, token_kind::question_mark);
  if (first == '$') return dollar(text, begin);
  fail_at_byte(text, begin);
}

// A word, or a text with a letter before its quote.
token word_or_literal(std::string_view text, std::size_t begin) {
  if (at(text, begin + 1) == '\'') {
    const int letter = text[begin] | 0x20;
    if (letter == 'e') return quoted(token_kind::escaped_text, text, begin, end_of_escaped(text, begin + 1));
    if (letter == 'x') return quoted(token_kind::binary, text, begin, end_of_quoted(text, begin + 1));
  }
  return word(text, begin);
}

}  // namespace

token next_token(std::string_view text, std::uint32_t from) {
  const std::size_t begin = skip_spaces(text, from);
  if (begin == text.size()) return {token_kind::end, no_keyword, place_of(begin, begin)};
  const char first = text[begin];
  if (is_byte(first, name_begin)) return word_or_literal(text, begin);
  if (is_byte(first, digit_byte)) return number(text, begin);
  switch (first) {
    case '(':
      return sign(token_kind::open, begin);
    case ')':
      return sign(token_kind::close, begin);
    case ',':
      return sign(token_kind::comma, begin);
    case ';':
      return sign(token_kind::semicolon, begin);
    case '*':
      return sign(token_kind::star, begin);
    case '+':
      return sign(token_kind::plus, begin);
    case '-':
      return sign(token_kind::minus, begin);
    case '/':
      return sign(token_kind::slash, begin);
    case '%':
      return sign(token_kind::percent, begin);
    case '=':
      return sign(token_kind::equal, begin);
    case '.':
      return is_byte(at(text, begin + 1), digit_byte) ? number(text, begin) : sign(token_kind::dot, begin);
    case '\'':
      return quoted(token_kind::text, text, begin, end_of_quoted(text, begin));
    case '"':
      return quoted(token_kind::quoted_name, text, begin, end_of_quoted(text, begin));
    default:
      return longer_sign(text, begin);
  }
}

std::uint32_t find_semicolon(std::string_view text, std::uint32_t from) {
  std::size_t next = from;
  while (next < text.size() && text[next] != ';') {
    const char first = text[next];
    std::size_t end = next + 1;
    if (first == '\'' || first == '"') {
      end = end_of_quoted(text, next);
    } else if (first == '-' && at(text, next + 1) == '-') {
      end = end_of_line(text, next);
    } else if (first == '/' && at(text, next + 1) == '*') {
      end = end_of_comment(text, next);
    } else if (first == '$' && dollar_mark(text, next) != 0) {
      end = end_of_dollar_text(text, next, dollar_mark(text, next));
    } else if (is_byte(first, name_begin | digit_byte)) {
      while (end < text.size() && is_byte(text[end], name_part)) ++end;
      if (end == next + 1 && (first | 0x20) == 'e' && at(text, end) == '\'') end = end_of_escaped(text, end);
    }
    next = end;
  }
  return static_cast<std::uint32_t>(std::min(next, text.size()));
}

}  // namespace ovsql::syntax
