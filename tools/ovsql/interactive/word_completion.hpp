#ifndef OVSQL_INTERACTIVE_WORD_COMPLETION_HPP_
#define OVSQL_INTERACTIVE_WORD_COMPLETION_HPP_

#include <string_view>

#include "interactive/line_editor.hpp"
#include "ovsql/session/database.hpp"

namespace shell {

// Completes the last word of a line: dot commands and their words where the line begins with a dot, else keywords, and
// the tables, views and columns of the database.
completion complete_word(ovsql::database& of, std::string_view before_cursor);

}  // namespace shell

#endif  // OVSQL_INTERACTIVE_WORD_COMPLETION_HPP_
