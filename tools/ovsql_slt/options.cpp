#include "options.hpp"

#include <algorithm>
#include <filesystem>
#include <thread>

#include "ovhost/values/number_text.hpp"

namespace slt {
namespace {

namespace fs = std::filesystem;

unsigned number(const std::string& option, const std::string& text) {
  const auto read = ovhost::parse_number<unsigned>(text);
  if (!read || *read == 0) throw bad_usage(option + " takes a number from 1, not \"" + text + "\"");
  return *read;
}

void set(options& chosen, const std::string& option, const std::string& argument) {
  if (option == "--jobs") {
    chosen.jobs = number(option, argument);
  } else if (option == "--seconds") {
    chosen.seconds = number(option, argument);
  } else if (option == "--engine") {
    chosen.engine = argument;
  } else if (option == "--unsupported") {
    chosen.unsupported = argument;
  } else {
    throw bad_usage("there is no option " + option);
  }
}

void add_folder(std::vector<std::string>& files, const std::string& path) {
  std::vector<std::string> found;
  for (const auto& each : fs::recursive_directory_iterator(path)) {
    if (each.is_regular_file() && each.path().extension() == ".test") found.push_back(each.path().string());
  }
  std::sort(found.begin(), found.end());
  files.insert(files.end(), found.begin(), found.end());
}

}  // namespace

options read_options(const std::vector<std::string>& arguments) {
  options chosen{.jobs = std::max(1U, std::thread::hardware_concurrency())};
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    if (!arguments[at].starts_with("--")) {
      chosen.paths.push_back(arguments[at]);
      continue;
    }
    if (at + 1 == arguments.size()) throw bad_usage(arguments[at] + " takes an argument");
    set(chosen, arguments[at], arguments[at + 1]);
    ++at;
  }
  return chosen;
}

std::vector<std::string> files_of(const std::vector<std::string>& paths) {
  std::vector<std::string> files;
  for (const std::string& each : paths) {
    if (!fs::exists(each)) throw bad_usage("there is no file " + each);
    if (fs::is_directory(each)) {
      add_folder(files, each);
    } else {
      files.push_back(each);
    }
  }
  if (files.empty()) throw bad_usage("there are no test files");
  return files;
}

}  // namespace slt
