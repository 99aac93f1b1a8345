// Turns the text of a statement into its tree.
#ifndef OVSQL_SYNTAX_PARSER_HPP_
#define OVSQL_SYNTAX_PARSER_HPP_

#include <cstddef>
#include <string_view>

#include "ovsql/syntax/memory.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql::syntax {

// What a text may hold at most.
inline constexpr std::size_t most_bytes = std::size_t{64} << 20;

// Reads the statement that begins at a byte of a UTF-8 text, and moves the byte behind its semicolon. Returns null
// where only spaces and comments follow. The tree points into the text and the memory. Places are bytes of the whole
// text.
//
// Throws ovsql::error of kind syntax for what is no statement: the position is that of the first word that does not
// fit, and the message says what was expected; `next` is then behind the statement's semicolon, so that a script can go
// on. Throws one of kind limit for a text that is too long, and for what is nested too deeply for the thread's stack.
const statement* parse(std::string_view text, std::size_t& next, memory& in);

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_PARSER_HPP_
