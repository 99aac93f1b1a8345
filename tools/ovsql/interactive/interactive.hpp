#ifndef OVSQL_INTERACTIVE_INTERACTIVE_HPP_
#define OVSQL_INTERACTIVE_INTERACTIVE_HPP_

#include "session.hpp"

namespace shell {

// Runs what a user types, until the end of the input or .quit. A statement ends with a semicolon and may take several
// lines; a dot command is one line.
void run_interactively(session& on);

}  // namespace shell

#endif  // OVSQL_INTERACTIVE_INTERACTIVE_HPP_
