#include "interactive/interrupt.hpp"

#include <csignal>

namespace shell {
namespace {

volatile std::sig_atomic_t is_interrupted = 0;

void note(int) { is_interrupted = 1; }

}  // namespace

void note_interrupts() {
  struct sigaction action {};
  action.sa_handler = note;
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
}

bool take_interrupt() {
  const bool was = is_interrupted != 0;
  is_interrupted = 0;
  return was;
}

}  // namespace shell
