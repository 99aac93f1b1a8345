#ifndef OVHOST_CSV_FIELD_TEXT_HPP_
#define OVHOST_CSV_FIELD_TEXT_HPP_

#include <algorithm>
#include <string_view>

namespace ovhost {

// Numbers and truth values may stand among blanks.
inline std::string_view without_blanks(std::string_view field) {
  const std::size_t first = field.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return field.substr(first, field.find_last_not_of(' ') + 1 - first);
}

// Compares with a word in lower case, in any case of ASCII letters.
inline bool is_word(std::string_view field, std::string_view lower_case) {
  return std::equal(field.begin(), field.end(), lower_case.begin(), lower_case.end(),
                    [](char left, char right) { return (left >= 'A' && left <= 'Z' ? left + 32 : left) == right; });
}

}  // namespace ovhost

#endif  // OVHOST_CSV_FIELD_TEXT_HPP_
