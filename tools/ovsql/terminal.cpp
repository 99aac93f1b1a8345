#include "terminal.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace shell {

bool is_terminal(int descriptor) { return isatty(descriptor) == 1; }

std::size_t terminal_width() {
  winsize size{};
  if (!is_terminal(STDOUT_FILENO) || ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return 0;
  return size.ws_col;
}

bool wants_no_colours() {
  const char* const none = std::getenv("NO_COLOR");
  const char* const kind = std::getenv("TERM");
  return (none != nullptr && *none != '\0') || (kind != nullptr && std::string_view(kind) == "dumb");
}

}  // namespace shell
