#ifndef TESTS_EXPRESSIONS_NAIVE_LIKE_HPP_
#define TESTS_EXPRESSIONS_NAIVE_LIKE_HPP_

#include <cstddef>
#include <string_view>

namespace tests {

// Matches LIKE by its recursive definition, for patterns whose escapes are right. It is the oracle of the matcher, and
// is kept busy for years by a hostile pattern.
inline bool naive_like(std::u16string_view text, std::u16string_view pattern) {
  if (pattern.empty()) return text.empty();
  const char16_t item = pattern[0];
  if (item == u'%') {
    if (pattern.size() == 1) return true;
    for (std::size_t start = 0; start <= text.size(); ++start) {
      if (naive_like(text.substr(start), pattern.substr(1))) return true;
    }
    return false;
  }
  if (text.empty()) return false;
  if (item == u'_') {
    const std::size_t width = text[0] >= 0xD800 && text[0] <= 0xDBFF ? 2 : 1;
    return text.size() >= width && naive_like(text.substr(width), pattern.substr(1));
  }
  const std::size_t escaped = item == u'\\' ? 1 : 0;
  return text[0] == pattern[escaped] && naive_like(text.substr(1), pattern.substr(escaped + 1));
}

}  // namespace tests

#endif  // TESTS_EXPRESSIONS_NAIVE_LIKE_HPP_
