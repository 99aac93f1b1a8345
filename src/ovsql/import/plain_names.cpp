#include "ovsql/import/plain_names.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "ovsql/syntax/character.hpp"
#include "ovsql/syntax/keyword.hpp"

namespace ovsql {
namespace {

bool may_stand_in_name(char byte) { return byte != '$' && syntax::is_byte(byte, syntax::name_part); }

bool is_reserved_word(std::string_view name) {
  return std::any_of(std::begin(syntax::reserved_words), std::end(syntax::reserved_words),
                     [&](std::string_view word) { return same_plain_name(name, word); });
}

bool is_among(const std::vector<std::string>& names, const std::string& name) {
  return std::any_of(names.begin(), names.end(), [&](const auto& each) { return same_plain_name(each, name); });
}

std::string numbered(const std::vector<std::string>& names, const std::string& name) {
  std::string candidate = name;
  for (std::size_t number = 2; is_among(names, candidate); ++number) candidate = name + "_" + std::to_string(number);
  return candidate;
}

}  // namespace

bool same_plain_name(std::string_view left, std::string_view right) {
  const auto lower = [](char each) { return each >= 'A' && each <= 'Z' ? static_cast<char>(each + 32) : each; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

std::string plain_name(std::string_view text) {
  std::string name;
  for (const char each : text) {
    if (may_stand_in_name(each)) {
      name += each;
    } else if (!name.empty() && name.back() != '_') {
      name += '_';
    }
  }
  if (!text.empty() && !may_stand_in_name(text.back()) && name.ends_with('_')) name.pop_back();
  if (!name.empty() && !syntax::is_byte(name.front(), syntax::name_begin)) name.insert(0, 1, '_');
  return is_reserved_word(name) ? name + "_" : name;
}

std::vector<std::string> plain_column_names(const std::vector<std::string>& headings) {
  std::vector<std::string> names;
  for (const std::string& each : headings) {
    const std::string name = plain_name(each);
    names.push_back(numbered(names, name.empty() ? "column" + std::to_string(names.size() + 1) : name));
  }
  return names;
}

}  // namespace ovsql
