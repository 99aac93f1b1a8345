#include "output/json_text.hpp"

#include <array>
#include <cstdio>
#include <variant>

namespace shell {
namespace {

std::string escaped(char each) {
  switch (each) {
    case '"':
      return "\\\"";
    case '\\':
      return "\\\\";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  std::array<char, 8> code{};
  std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(each));
  return code.data();
}

bool is_bare(const ovsql::value& of) {
  return std::holds_alternative<bool>(of) || std::holds_alternative<std::int64_t>(of) ||
         std::holds_alternative<std::uint64_t>(of) || std::holds_alternative<operator_library::Decimal>(of);
}

bool is_real(const ovsql::value& of) { return std::holds_alternative<double>(of) || std::holds_alternative<float>(of); }

std::string json_real(const std::string& words) {
  return words.find_first_not_of("0123456789.eE+-") == std::string::npos ? words : "null";
}

std::string json_value(const ovsql::statement& row, std::size_t at) {
  if (row.is_null(at)) return "null";
  if (is_real(row[at])) return json_real(row.words(at));
  return is_bare(row[at]) ? row.words(at) : json_string(row.text(at));
}

}  // namespace

std::string json_string(std::string_view utf8) {
  std::string text = "\"";
  for (const char each : utf8) {
    const bool is_special = each == '"' || each == '\\' || static_cast<unsigned char>(each) < ' ';
    text += is_special ? escaped(each) : std::string(1, each);
  }
  return text + "\"";
}

std::string json_object(const ovsql::statement& row) {
  std::string text = "{";
  for (std::size_t at = 0; at < row.column_count(); ++at) {
    text += (at == 0 ? "" : ", ") + json_string(row.column(at).name) + ": " + json_value(row, at);
  }
  return text + "}";
}

}  // namespace shell
