#ifndef OVSQL_SLT_RUN_FILES_HPP_
#define OVSQL_SLT_RUN_FILES_HPP_

#include <string>
#include <vector>

#include "file_report.hpp"
#include "options.hpp"

namespace slt {

// Runs files in parallel, the largest first, and returns what came of all. Throws std::system_error.
file_report run_files(std::vector<std::string> files, const options& how);

}  // namespace slt

#endif  // OVSQL_SLT_RUN_FILES_HPP_
