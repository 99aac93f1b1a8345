#include "commands/commands.hpp"

#include <stdexcept>

#include "commands/command_functions.hpp"
#include "session.hpp"
#include "text/script_scan.hpp"

namespace shell {
namespace {

constexpr std::size_t any_number = static_cast<std::size_t>(-1);

constexpr dot_command commands[] = {
    {"bail", "on|off", "stop at the first error", 1, 1, set_bail},
    {"exit", "", "leave, as .quit does", 0, 0, quit},
    {"explain", "on|off", "show how each query is done before its rows", 1, 1, set_explain},
    {"headers", "on|off", "show the names of columns", 1, 1, set_headers},
    {"help", "[COMMAND]", "show this list, or a line of it", 0, 1, show_help},
    {"import", "FILE [TABLE] [OPTION]...",
     "make a table of a CSV file; options: --types a=TEXT,b=INT --delimiter C --null TEXT --no-header", 1, any_number,
     import_file},
    {"limit", "N", "show at most N rows of a result; 0 for all", 1, 1, set_limit},
    {"mode", "[MODE]", "show results as box, table, csv, json, jsonl, markdown or line", 0, 1, set_mode},
    {"output", "[FILE]", "write results to a file, or to where they went at first", 0, 1, set_output},
    {"print", "[TEXT]...", "show a text", 0, any_number, print_text},
    {"quit", "", "leave", 0, 0, quit},
    {"read", "FILE", "run the statements and commands of a file", 1, 1, read_script},
    {"schema", "[TABLE]", "show the statements that make a table and its indexes, or a view", 0, 1, show_schema},
    {"tables", "[PART]", "show the names of tables and views, those that hold PART", 0, 1, show_tables},
    {"timer", "on|off", "show how long statements take", 1, 1, set_timer},
};

// The exact name, or the only one that begins so.
const dot_command& find(std::string_view name) {
  std::vector<const dot_command*> candidates;
  for (const dot_command& each : commands) {
    if (each.name == name) return each;
    if (!name.empty() && each.name.starts_with(name)) candidates.push_back(&each);
  }
  if (candidates.size() == 1) return *candidates.front();
  if (candidates.empty()) throw std::runtime_error("there is no command ." + std::string(name) + "; .help lists them");
  std::string list;
  for (const auto* each : candidates) list += " ." + std::string(each->name);
  throw std::runtime_error("." + std::string(name) + " may be" + list);
}

}  // namespace

std::span<const dot_command> dot_commands() { return commands; }

void run_command(session& on, std::string_view line) {
  std::vector<std::string> words = split_words(line);
  const dot_command& command = find(words.empty() ? "" : words.front());
  words.erase(words.begin());
  if (words.size() < command.least_arguments || words.size() > command.most_arguments) {
    throw std::runtime_error("usage: ." + std::string(command.name) + " " + std::string(command.arguments));
  }
  command.run(on, words);
}

}  // namespace shell
