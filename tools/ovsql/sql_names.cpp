#include "sql_names.hpp"

#include <algorithm>

namespace shell {
namespace {

constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";
constexpr std::string_view letters_and_digits = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789";

bool is_plain(std::string_view name) {
  return !name.empty() && letters.find(name.front()) != std::string_view::npos &&
         name.find_first_not_of(letters_and_digits) == std::string_view::npos;
}

}  // namespace

std::string sql_name(std::string_view name) {
  if (is_plain(name)) return std::string(name);
  std::string quoted = "\"";
  for (const char each : name) quoted += each == '"' ? "\"\"" : std::string(1, each);
  return quoted + "\"";
}

bool is_same_name(std::string_view left, std::string_view right) {
  const auto lower = [](char each) { return each >= 'A' && each <= 'Z' ? static_cast<char>(each + 32) : each; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace shell
