#ifndef OVSQL_SLT_OPTIONS_HPP_
#define OVSQL_SLT_OPTIONS_HPP_

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace slt {

inline constexpr const char* usage =
    "usage: ovsql_slt [--jobs N] [--seconds N] [--engine NAME] [--unsupported FILE] PATH...\n"
    "Runs sqllogictest files, and those named *.test in folders.\n"
    "  --jobs N            run N files at a time; the number of cores\n"
    "  --seconds N         end a file after N seconds; 600\n"
    "  --engine NAME       the name that skipif and onlyif look at; sqlite\n"
    "  --unsupported FILE  write what is not supported, and what failed, with counts\n";

struct bad_usage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct options {
  std::size_t jobs;
  unsigned seconds = 600;
  std::string engine = "sqlite";
  std::string unsupported = {};  // empty: no such file
  std::vector<std::string> paths = {};
};

// Throws bad_usage.
options read_options(const std::vector<std::string>& arguments);

// Returns the files of paths: files as they are named, those of folders sorted. Throws bad_usage where there are none.
std::vector<std::string> files_of(const std::vector<std::string>& paths);

}  // namespace slt

#endif  // OVSQL_SLT_OPTIONS_HPP_
