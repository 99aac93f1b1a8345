#include "file_report.hpp"

#include <algorithm>
#include <numeric>

namespace slt {

std::uint64_t file_report::records() const { return std::accumulate(counts.begin(), counts.end(), std::uint64_t{0}); }

void file_report::add_reason(outcome of, const std::string& reason, std::uint64_t times, const std::string& place) {
  reason_count& known = reasons[{of, reason}];
  if (known.count == 0) known.first_place = place;
  known.count += times;
}

void file_report::add(const file_report& other) {
  for (std::size_t at = 0; at < outcome_count; ++at) counts[at] += other.counts[at];
  failures.insert(failures.end(), other.failures.begin(), other.failures.end());
  for (const auto& [key, known] : other.reasons) add_reason(key.first, key.second, known.count, known.first_place);
}

std::string file_report::summary() const {
  return "records: " + std::to_string(records()) + ", right: " + std::to_string(count(outcome::right)) +
         ", wrong: " + std::to_string(count(outcome::wrong)) +
         ", unsupported: " + std::to_string(count(outcome::unsupported)) +
         ", errors: " + std::to_string(count(outcome::error));
}

std::string file_report::list_of(outcome of) const {
  std::vector<std::pair<std::uint64_t, std::string>> lines;
  for (const auto& [key, known] : reasons) {
    if (key.first == of) lines.emplace_back(known.count, key.second + "  (" + known.first_place + ")");
  }
  std::sort(lines.rbegin(), lines.rend());
  std::string text;
  for (const auto& [count, line] : lines) text += std::to_string(count) + "  " + line + "\n";
  return text;
}

}  // namespace slt
