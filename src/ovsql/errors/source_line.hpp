#ifndef OVSQL_ERRORS_SOURCE_LINE_HPP_
#define OVSQL_ERRORS_SOURCE_LINE_HPP_

#include <cstddef>
#include <string>
#include <string_view>

namespace ovsql {

// Shows the line of a text that holds a byte, and a caret below that byte (see error::describe). A position behind the
// text is that of its end.
std::string point_at(std::string_view text, std::size_t position);

}  // namespace ovsql

#endif  // OVSQL_ERRORS_SOURCE_LINE_HPP_
