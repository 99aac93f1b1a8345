#ifndef OVSQL_TEXT_DISPLAY_WIDTH_HPP_
#define OVSQL_TEXT_DISPLAY_WIDTH_HPP_

#include <cstddef>
#include <string>
#include <string_view>

namespace shell {

// How many columns of a terminal a text takes: none for combining characters, two for wide ones (東, 🙂). A byte
// that is no UTF-8 takes one.
std::size_t display_width(std::string_view utf8);

// Returns the text, or where it is wider its beginning and an ellipsis, no wider than most. Requires: most > 0.
std::string cut_to_width(std::string_view utf8, std::size_t most);

}  // namespace shell

#endif  // OVSQL_TEXT_DISPLAY_WIDTH_HPP_
