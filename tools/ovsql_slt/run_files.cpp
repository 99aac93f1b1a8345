#include "run_files.hpp"

#include <poll.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

#include "file_process.hpp"

namespace slt {
namespace {

void sort_by_size(std::vector<std::string>& files) {
  std::map<std::string, std::uintmax_t> sizes;
  for (const std::string& each : files) {
    std::error_code unknown;
    sizes[each] = std::filesystem::file_size(each, unknown);
  }
  std::stable_sort(files.begin(), files.end(), [&](const auto& a, const auto& b) { return sizes[a] > sizes[b]; });
}

class process_pool {
 public:
  explicit process_pool(const options& how) : how_(how) {}

  file_report run(const std::vector<std::string>& files) {
    for (const std::string& each : files) {
      if (processes_.size() == how_.jobs) wait_for_one();
      processes_.emplace_back(each, how_.engine, how_.seconds);
    }
    while (!processes_.empty()) wait_for_one();
    file_report all;
    for (const auto& [path, report] : reports_) all.add(report);
    return all;
  }

 private:
  void wait_for_one() {
    const std::size_t before = processes_.size();
    while (processes_.size() == before) take_messages();
  }

  void take_messages() {
    std::vector<pollfd> polled;
    for (const file_process& each : processes_) polled.push_back({each.descriptor(), POLLIN, 0});
    if (poll(polled.data(), polled.size(), -1) < 0) return;
    std::vector<file_process> going_on;
    for (std::size_t at = 0; at < polled.size(); ++at) {
      if (polled[at].revents == 0 || processes_[at].take()) {
        going_on.push_back(std::move(processes_[at]));
      } else {
        reports_[processes_[at].path()].add(processes_[at].report());
      }
    }
    processes_.swap(going_on);
  }

  const options& how_;
  std::vector<file_process> processes_;
  std::map<std::string, file_report> reports_;  // by path
};

}  // namespace

file_report run_files(std::vector<std::string> files, const options& how) {
  sort_by_size(files);
  return process_pool(how).run(files);
}

}  // namespace slt
