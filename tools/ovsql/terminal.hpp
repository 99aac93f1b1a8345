#ifndef OVSQL_TERMINAL_HPP_
#define OVSQL_TERMINAL_HPP_

#include <cstddef>

namespace shell {

// Whether standard input, output (0, 1) is a terminal.
bool is_terminal(int descriptor);

// The number of columns of the terminal at standard output; 0 if it is none.
std::size_t terminal_width();

// Whether the environment asks for none, by NO_COLOR or a dumb terminal.
bool wants_no_colours();

}  // namespace shell

#endif  // OVSQL_TERMINAL_HPP_
