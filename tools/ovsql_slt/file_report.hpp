#ifndef OVSQL_SLT_FILE_REPORT_HPP_
#define OVSQL_SLT_FILE_REPORT_HPP_

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "verdict.hpp"

namespace slt {

inline constexpr std::size_t outcome_count = 4;

// How often a reason was given, and where first.
struct reason_count {
  std::uint64_t count = 0;
  std::string first_place = {};  // "file:line"
};

// What came of a file, or of several.
struct file_report {
  std::array<std::uint64_t, outcome_count> counts{};                     // by outcome
  std::vector<std::string> failures = {};                                // what was wrong, the first few
  std::map<std::pair<outcome, std::string>, reason_count> reasons = {};  // of unsupported records and of errors

  std::uint64_t count(outcome of) const { return counts[static_cast<std::size_t>(of)]; }
  std::uint64_t records() const;

  void add(outcome of) { ++counts[static_cast<std::size_t>(of)]; }
  void add_reason(outcome of, const std::string& reason, std::uint64_t times, const std::string& place);
  void add(const file_report& other);

  // "records: 3, right: 3, wrong: 0, unsupported: 0, errors: 0"
  std::string summary() const;

  // The reasons of an outcome, a line each, the most frequent first.
  std::string list_of(outcome of) const;
};

}  // namespace slt

#endif  // OVSQL_SLT_FILE_REPORT_HPP_
