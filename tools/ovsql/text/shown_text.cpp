#include "text/shown_text.hpp"

#include <algorithm>
#include <array>
#include <cstdio>

namespace shell {
namespace {

bool is_control(char each) { return static_cast<unsigned char>(each) < ' ' || each == '\x7f'; }

std::string control_words(char control) {
  if (control == '\n') return "\\n";
  if (control == '\t') return "\\t";
  std::array<char, 8> code{};
  std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned>(control));
  return code.data();
}

}  // namespace

std::string without_controls(const std::string& text) {
  if (std::none_of(text.begin(), text.end(), is_control)) return text;
  std::string shown;
  for (const char each : text) shown += is_control(each) ? control_words(each) : std::string(1, each);
  return shown;
}

std::string shown_value(const ovsql::statement& row, std::size_t at) {
  const std::string words = without_controls(row.words(at));
  return words == "NULL" && !row.is_null(at) ? "'NULL'" : words;
}

}  // namespace shell
