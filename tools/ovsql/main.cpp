// SQL over tables in memory, from the command line.
#include <cstdlib>
#include <exception>
#include <iostream>

#include "command_line.hpp"
#include "interactive/interactive.hpp"
#include "session.hpp"
#include "terminal.hpp"

namespace {

using namespace shell;

constexpr int exit_usage = 2;

shell_settings settings_of(const command_line& wanted) {
  const bool terminal = is_terminal(1);
  shell_settings settings;
  settings.mode = wanted.mode != nullptr ? wanted.mode : find_output_mode(terminal ? "box" : "table");
  settings.output = {wanted.headers, terminal_width(), terminal && !wants_no_colours()};
  settings.bail = wanted.bail;
  settings.interactive = wanted.scripts.empty() && is_terminal(0);
  return settings;
}

void run_input(session& on) { on.settings().interactive ? run_interactively(on) : on.run_file("-"); }

void run_scripts(session& on, const std::vector<script_argument>& scripts) {
  for (const script_argument& each : scripts) {
    if (on.stopped()) return;
    each.is_file ? on.run_file(each.text) : on.run(each.text);
  }
}

int run(const command_line& wanted) {
  session on(std::cout, std::cerr, settings_of(wanted));
  for (const std::string& each : wanted.csv_files) on.import(each);
  wanted.scripts.empty() ? run_input(on) : run_scripts(on, wanted.scripts);
  if (!std::cout.flush()) throw std::runtime_error("the output cannot be written");
  return on.failed() ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace

int main(int count, char** words) try {
  std::ios::sync_with_stdio(false);
  const command_line wanted = read_command_line({words + 1, words + count});
  if (wanted.help) {
    std::cout << usage();
    return EXIT_SUCCESS;
  }
  return run(wanted);
} catch (const bad_usage& error) {
  std::cerr << "ovsql: " << error.what() << "\novsql --help shows what there is\n";
  return exit_usage;
} catch (const std::exception& error) {
  std::cerr << "ovsql: " << error.what() << '\n';
  return EXIT_FAILURE;
}
