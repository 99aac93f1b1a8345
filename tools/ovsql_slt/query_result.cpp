#include "query_result.hpp"

#include <md5.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace slt {
namespace {

// Test files are read without the blanks at the ends of lines.
bool equal_text(std::string_view value, std::string_view expected) {
  return value == expected || value.substr(0, value.find_last_not_of(" \t\r") + 1) == expected;
}

}  // namespace

std::string md5(std::string_view text) {
  std::array<char, MD5_DIGEST_STRING_LENGTH> digits{};
  MD5Data(reinterpret_cast<const std::uint8_t*>(text.data()), text.size(), digits.data());
  return digits.data();
}

void query_result::sort(sort_mode mode) {
  if (mode == sort_mode::values || columns_ == 1) {
    if (mode != sort_mode::none) std::sort(values_.begin(), values_.end());
  } else if (mode == sort_mode::rows) {
    sort_rows();
  }
}

void query_result::sort_rows() {
  std::vector<std::vector<std::string>> rows;
  for (auto first = values_.begin(); first != values_.end(); first += static_cast<std::ptrdiff_t>(columns_)) {
    rows.emplace_back(std::make_move_iterator(first), std::make_move_iterator(first + columns_));
  }
  std::sort(rows.begin(), rows.end());
  values_.clear();
  for (auto& row : rows) std::move(row.begin(), row.end(), std::back_inserter(values_));
}

std::string query_result::hashed() const {
  std::string lines;
  for (const std::string& each : values_) lines += each + "\n";
  return std::to_string(values_.size()) + " values hashing to " + md5(lines);
}

bool query_result::equals(const std::vector<std::string_view>& expected) const {
  if (expected.size() == 1 && expected.front().find(" values hashing to ") != std::string_view::npos) {
    return hashed() == expected.front();
  }
  return std::equal(values_.begin(), values_.end(), expected.begin(), expected.end(), equal_text);
}

}  // namespace slt
