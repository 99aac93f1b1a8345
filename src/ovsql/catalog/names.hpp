#ifndef OVSQL_CATALOG_NAMES_HPP_
#define OVSQL_CATALOG_NAMES_HPP_

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace ovsql {

inline char fold_ascii(char of) { return of >= 'A' && of <= 'Z' ? static_cast<char>(of - 'A' + 'a') : of; }

// Names are compared without regard to the case of ASCII letters.
inline bool same_name(std::string_view left, std::string_view right) {
  return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin(),
                                                   [](char a, char b) { return fold_ascii(a) == fold_ascii(b); });
}

struct name_order {
  using is_transparent = void;
  bool operator()(std::string_view left, std::string_view right) const {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [](char a, char b) { return fold_ascii(a) < fold_ascii(b); });
  }
};

// A name as messages show it.
inline std::string quoted(std::string_view name) { return "\"" + std::string(name) + "\""; }

// Returns `; did you mean "city"?` for the known name nearest to a wrong one, by their Levenshtein distance; an empty
// text where none is near.
std::string suggest(std::string_view wrong, const std::vector<std::string_view>& known);

}  // namespace ovsql

#endif  // OVSQL_CATALOG_NAMES_HPP_
