#ifndef OVSQL_SLT_RUN_FILE_HPP_
#define OVSQL_SLT_RUN_FILE_HPP_

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "file_report.hpp"

namespace slt {

// How far a run is; readable from outside while it goes on.
struct run_progress {
  std::uint64_t line = 0;                             // of the record that is being run
  std::array<std::uint64_t, outcome_count> counts{};  // of those before it
};

// Receives each failure at once, and the reasons when the file is done.
struct run_listener {
  std::function<void(const std::string& text)> failure;
  std::function<void(outcome of, const std::string& reason, const reason_count& known)> reason;
};

// Runs a test file on a database of its own. A file that cannot be read, or is no test file, counts as an error.
void run_file(const std::string& path, std::string_view engine, run_progress& progress, const run_listener& listener);

}  // namespace slt

#endif  // OVSQL_SLT_RUN_FILE_HPP_
