#ifndef OVHOST_PLANS_JOIN_WORDS_HPP_
#define OVHOST_PLANS_JOIN_WORDS_HPP_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ovhost {

inline std::string join_words(const std::vector<std::string>& parts, std::string_view separator) {
  std::string result;
  for (std::size_t at = 0; at < parts.size(); ++at) {
    if (at != 0) result += separator;
    result += parts[at];
  }
  return result;
}

}  // namespace ovhost

#endif  // OVHOST_PLANS_JOIN_WORDS_HPP_
