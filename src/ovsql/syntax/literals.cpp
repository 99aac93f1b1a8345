#include "ovsql/syntax/literals.hpp"

#include <algorithm>
#include <string>

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/character.hpp"
#include "ovsql/syntax/utf8.hpp"

namespace ovsql::syntax {
namespace {

[[noreturn]] void fail_literal(const char* message, std::size_t position) {
  throw error(error_kind::syntax, message, position);
}

std::string_view without_doubled(std::string_view inside, char quote, memory& in) {
  if (inside.find(quote) == std::string_view::npos) return inside;
  std::string made;
  made.reserve(inside.size());
  for (std::size_t i = 0; i < inside.size(); ++i) {
    made += inside[i];
    if (inside[i] == quote) ++i;
  }
  return in.keep(made);
}

// Reads the escapes of E'...'.
class escapes {
 public:
  escapes(std::string_view inside, std::size_t position) : inside_(inside), position_(position) {}

  std::string decoded() {
    std::string made;
    made.reserve(inside_.size());
    while (next_ < inside_.size()) {
      const char each = inside_[next_++];
      if (each == '\'') ++next_;
      if (each == '\\') {
        append_escape(made);
      } else {
        made += each;
      }
    }
    if (find_invalid_utf8(made) != std::string_view::npos)
      fail_literal("the escapes of this text are not UTF-8", position_);
    return made;
  }

 private:
  void append_escape(std::string& to) {
    const std::size_t begin = position_ + next_ - 1;
    const char letter = inside_[next_++];
    constexpr std::string_view letters = "bfnrt";
    constexpr std::string_view meanings = "\b\f\n\r\t";
    if (const std::size_t which = letters.find(letter); which != std::string_view::npos) {
      to += meanings[which];
    } else if (letter == 'x' && next_ < inside_.size() && hex_value(inside_[next_]) < 16) {
      append_byte(to, read(16, 2), begin);
    } else if (letter >= '0' && letter <= '7') {
      --next_;
      append_byte(to, read(8, 3), begin);
    } else if (letter == 'u' || letter == 'U') {
      append_character(to, letter == 'u' ? 4 : 8, begin);
    } else {
      to += letter;
    }
  }

  std::uint32_t read(unsigned base, std::size_t most_digits) {
    std::uint32_t number = 0;
    for (; most_digits != 0 && next_ < inside_.size() && hex_value(inside_[next_]) < base; --most_digits) {
      number = number * base + hex_value(inside_[next_++]);
    }
    return number;
  }

  static void append_byte(std::string& to, std::uint32_t number, std::size_t begin) {
    if (number == 0 || number > 0xFF) fail_literal("this escape stands for no byte", begin);
    to += static_cast<char>(number);
  }

  void append_character(std::string& to, std::size_t digits, std::size_t begin) {
    const std::size_t first = next_;
    const std::uint32_t number = read(16, digits);
    const bool is_surrogate = number >= 0xD800 && number < 0xE000;
    if (next_ - first != digits || number == 0 || number > 0x10FFFF || is_surrogate) {
      fail_literal("this escape stands for no character", begin);
    }
    append_utf8(to, number);
  }

  std::string_view inside_;
  std::size_t position_;  // of the inside in the statement
  std::size_t next_ = 0;
};

}  // namespace

std::string_view unquoted(std::string_view text, const token& of, memory& in) {
  const std::string_view all = text.substr(of.at.begin, of.at.end - of.at.begin);
  switch (of.kind) {
    case token_kind::quoted_name:
      return without_doubled(all.substr(1, all.size() - 2), '"', in);
    case token_kind::text:
      return without_doubled(all.substr(1, all.size() - 2), '\'', in);
    case token_kind::escaped_text:
      return in.keep(escapes(all.substr(2, all.size() - 3), of.at.begin + 2).decoded());
    case token_kind::dollar_text: {
      const std::size_t mark = all.find('$', 1) + 1;
      return all.substr(mark, all.size() - 2 * mark);
    }
    default:
      return all;
  }
}

std::string_view decoded_binary(std::string_view text, const token& of, memory& in) {
  std::string made;
  for (std::size_t at = of.at.begin + 2; at != of.at.end - 1; at += 2) {
    const unsigned high = hex_value(text[at]);
    const unsigned low = hex_value(text[at + 1]);
    if (high > 15 || low > 15) fail_literal("a binary literal holds pairs of hexadecimal digits", at);
    made += static_cast<char>(high * 16 + low);
  }
  return in.keep(made);
}

std::string_view lower_case(std::string_view name, memory& in) {
  const auto is_upper = [](char letter) { return letter >= 'A' && letter <= 'Z'; };
  if (std::none_of(name.begin(), name.end(), is_upper)) return name;
  std::string made(name);
  for (char& letter : made) {
    if (is_upper(letter)) letter = static_cast<char>(letter | 0x20);
  }
  return in.keep(made);
}

}  // namespace ovsql::syntax
