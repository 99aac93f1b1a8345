#ifndef OVSQL_COMMANDS_COMMANDS_HPP_
#define OVSQL_COMMANDS_COMMANDS_HPP_

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace shell {

class session;

struct dot_command {
  std::string_view name;
  std::string_view arguments;  // as .help shows them
  std::string_view help;
  std::size_t least_arguments;
  std::size_t most_arguments;
  void (*run)(session& on, const std::vector<std::string>& arguments);
};

std::span<const dot_command> dot_commands();

// Runs a command line without its dot. A command may be cut short as long as it is not another's beginning. Throws
// std::runtime_error with what the user should know.
void run_command(session& on, std::string_view line);

}  // namespace shell

#endif  // OVSQL_COMMANDS_COMMANDS_HPP_
