#ifndef OVSQL_INTERACTIVE_INTERRUPT_HPP_
#define OVSQL_INTERACTIVE_INTERRUPT_HPP_

namespace shell {

// From now on Ctrl-C does not end the process, but is noted.
void note_interrupts();

// Tells whether Ctrl-C was pressed since the last call.
bool take_interrupt();

}  // namespace shell

#endif  // OVSQL_INTERACTIVE_INTERRUPT_HPP_
