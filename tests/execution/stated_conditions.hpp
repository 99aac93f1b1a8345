// Conditions on key columns as words: "> i5, <= d9.5 | ^ 'ab' !" are two on the first column and one on the second. The
// signs are > < = >= <= and ^ for "starts with"; an exclamation mark rejects NULL.
#ifndef TESTS_EXECUTION_STATED_CONDITIONS_HPP_
#define TESTS_EXECUTION_STATED_CONDITIONS_HPP_

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ov_sql_executor/execution/key_condition.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"
#include "spelling.hpp"
#include "valueless.hpp"

namespace tests {

struct condition {
  key_operation op;
  value bound;
  bool rejects_null = false;
};
using conditions = std::vector<condition>;

inline constexpr const char* operation_signs[] = {">", "<", "=", ">=", "<=", "^"};

inline std::vector<conditions> conditions_in(std::string_view words) {
  std::vector<conditions> lists;
  for (const std::string& list : split(words, '|')) {
    conditions& made = lists.emplace_back();
    for (const std::string& each : split(list, ',')) {
      const std::vector<std::string> parts = split(each);
      if (parts.empty()) continue;
      const auto op = std::find(std::begin(operation_signs), std::end(operation_signs), parts[0]) - operation_signs;
      made.push_back({key_operation{static_cast<std::int32_t>(op)},
                      parts[1] == "valueless" ? valueless() : val(parts[1]), parts.size() == 3});
    }
  }
  return lists;
}

inline std::string spell(const std::vector<conditions>& lists) {
  std::string words;
  for (const conditions& list : lists) {
    words += words.empty() ? "" : " | ";
    for (const condition& each : list) {
      words +=
          operation_signs[static_cast<int>(each.op)] + (" " + spell(each.bound)) + (each.rejects_null ? " !, " : ", ");
    }
  }
  return words;
}

// As a scan takes them; the bounds become constants of the run.
inline std::vector<std::vector<key_condition>> key_conditions(const std::vector<conditions>& lists,
                                                              execution_context& run) {
  std::vector<std::vector<key_condition>> made(lists.size());
  for (std::size_t n = 0; n < lists.size(); ++n) {
    for (const condition& each : lists[n]) {
      const auto position = static_cast<std::int16_t>(run.constants.size());
      run.constants.push_back(each.bound);
      made[n].push_back({each.op, each.rejects_null,
                         operators::operand(std::make_unique<operators::value_from_context>(
                             operators::context_list::constants, position))});
    }
  }
  return made;
}

}  // namespace tests

#endif  // TESTS_EXECUTION_STATED_CONDITIONS_HPP_
