#ifndef OVSQL_COMMAND_LINE_HPP_
#define OVSQL_COMMAND_LINE_HPP_

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "output/result_writer.hpp"

namespace shell {

struct bad_usage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Something to run: the text of -c, or the file of -f.
struct script_argument {
  bool is_file;
  std::string text;
};

struct command_line {
  std::vector<std::string> csv_files = {};
  std::vector<script_argument> scripts = {};  // in their order; none: standard input
  const output_mode* mode = nullptr;          // null: what fits the output
  bool headers = true;
  bool bail = false;
  bool help = false;
};

// Throws bad_usage.
command_line read_command_line(const std::vector<std::string>& arguments);

// What --help prints.
std::string usage();

}  // namespace shell

#endif  // OVSQL_COMMAND_LINE_HPP_
