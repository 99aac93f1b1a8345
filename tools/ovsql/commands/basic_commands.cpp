// Commands about the shell itself.
#include <stdexcept>
#include <string>

#include "commands/command_functions.hpp"
#include "commands/commands.hpp"
#include "session.hpp"

namespace shell {
namespace {

void show(session& on, const dot_command& command) {
  const std::string usage = "." + std::string(command.name) + " " + std::string(command.arguments);
  const std::size_t width = 34;
  on.out() << usage << std::string(usage.size() < width ? width - usage.size() : 1, ' ') << command.help << '\n';
}

}  // namespace

void show_help(session& on, const std::vector<std::string>& arguments) {
  for (const dot_command& each : dot_commands()) {
    if (arguments.empty() || each.name.starts_with(arguments.front())) show(on, each);
  }
}

void print_text(session& on, const std::vector<std::string>& arguments) {
  for (const std::string& each : arguments) on.out() << (&each == &arguments.front() ? "" : " ") << each;
  on.out() << '\n';
}

void quit(session& on, const std::vector<std::string>&) { on.quit(); }

void read_script(session& on, const std::vector<std::string>& arguments) { on.run_file(arguments.front()); }

void set_output(session& on, const std::vector<std::string>& arguments) {
  on.write_to(arguments.empty() ? "" : arguments.front());
}

}  // namespace shell
