#include "ovhost/values/value_words.hpp"

#include <array>
#include <cstdint>
#include <variant>

#include "ovhost/values/decimal_text.hpp"
#include "ovhost/values/number_text.hpp"
#include "ovhost/values/text.hpp"

namespace ovhost {
namespace {

using namespace operator_library;

constexpr std::string_view null_word = "NULL";
constexpr std::string_view hexadecimal = "0123456789abcdef";

std::string escape_control(std::string_view text) {
  std::string result;
  for (const char each : text) {
    const auto byte = static_cast<unsigned char>(each);
    if (byte >= 0x20 && byte != 0x7F) {
      result += each;
    } else if (each == '\n') {
      result += "\\n";
    } else {
      result += {'\\', 'x', hexadecimal[byte >> 4], hexadecimal[byte & 15]};
    }
  }
  return result;
}

std::string quote(std::string_view text) {
  std::string result = "'";
  for (const char each : text) result += each == '\'' ? "''" : std::string(1, each);
  return result + "'";
}

std::string hex(const Binary& binary) {
  std::string result = "0x";
  for (const std::uint8_t byte : binary.bytes) result += {hexadecimal[byte >> 4], hexadecimal[byte & 15]};
  return result;
}

struct plain_words {
  std::string_view table;

  std::string operator()(bool of) const { return of ? "true" : "false"; }
  std::string operator()(const db_string::tt_string& of) const { return escape_control(utf8(decode(of))); }
  std::string operator()(Decimal of) const { return to_text(of); }
  std::string operator()(const Binary& of) const { return hex(of); }
  std::string operator()(const OV_OBJ_REF& of) const {
    return std::string(table.empty() ? "object" : table) + " #" + std::to_string(of.object_number);
  }
  std::string operator()(const SetSpecifier& of) const { return escape_control(utf8(of.units)); }
  std::string operator()(const NullValue&) const { return std::string(null_word); }
  template <class Number>
  std::string operator()(Number of) const {
    return number_text(of);
  }
};

bool needs_quotes(std::string_view text) {
  return text.empty() || text == null_word || text.front() == '\'' || text.front() == ' ' || text.back() == ' ';
}

}  // namespace

std::string cell_words(const ov::sql_executor::value& of, std::string_view table_of_reference) {
  std::string words = std::visit(plain_words{table_of_reference}, of);
  const bool is_text = std::holds_alternative<db_string::tt_string>(of);
  return is_text && needs_quotes(words) ? quote(words) : words;
}

std::string literal_words(const ov::sql_executor::value& of, std::string_view table_of_reference) {
  std::string words = std::visit(plain_words{table_of_reference}, of);
  return std::holds_alternative<db_string::tt_string>(of) ? quote(words) : words;
}

}  // namespace ovhost
