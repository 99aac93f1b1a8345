#ifndef OVSQL_TEXT_SHOWN_TEXT_HPP_
#define OVSQL_TEXT_SHOWN_TEXT_HPP_

#include <cstddef>
#include <string>

#include "ovsql/session/statement.hpp"

namespace shell {

// A value on one line: control characters of a text are escaped, and the text NULL is in quotes, since NULL is not.
std::string shown_value(const ovsql::statement& row, std::size_t at);

// A text with its control characters escaped: \n, \t, \x1b.
std::string without_controls(const std::string& text);

}  // namespace shell

#endif  // OVSQL_TEXT_SHOWN_TEXT_HPP_
