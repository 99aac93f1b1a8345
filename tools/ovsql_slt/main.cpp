// Runs sqllogictest files on databases in memory and says how many of their records come out right.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>

#include "file_report.hpp"
#include "options.hpp"
#include "run_files.hpp"

namespace {

using namespace slt;

void print_failures(const file_report& report) {
  constexpr std::size_t most = 50;
  const std::size_t shown = std::min(report.failures.size(), most);
  for (std::size_t at = 0; at < shown; ++at) std::cout << report.failures[at] << '\n';
  const std::size_t all = report.count(outcome::wrong) + report.count(outcome::error);
  if (all > shown) std::cout << "and " << all - shown << " more\n";
}

void write_list(const file_report& report, const std::string& path) {
  if (path.empty()) return;
  std::ofstream output(path);
  output << "unsupported:\n" << report.list_of(outcome::unsupported);
  output << "\nerrors:\n" << report.list_of(outcome::error);
  if (!output.flush()) throw bad_usage(path + " cannot be written");
}

int run(const std::vector<std::string>& arguments) {
  const options how = read_options(arguments);
  const file_report report = run_files(files_of(how.paths), how);
  print_failures(report);
  write_list(report, how.unsupported);
  std::cout << report.summary() << '\n';
  const bool good = report.count(outcome::wrong) + report.count(outcome::error) == 0;
  return good ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int count, char** words) try { return run({words + 1, words + count}); } catch (const bad_usage& error) {
  std::cerr << "ovsql_slt: " << error.what() << '\n' << usage;
  return 2;
} catch (const std::exception& error) {
  std::cerr << "ovsql_slt: " << error.what() << '\n';
  return 2;
}
