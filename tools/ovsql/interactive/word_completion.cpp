#include "interactive/word_completion.hpp"

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

#include "commands/commands.hpp"
#include "output/result_writer.hpp"
#include "sql_names.hpp"

namespace shell {
namespace {

constexpr std::string_view keywords[] = {
    "all",      "and",        "any",    "as",     "asc",     "avg",     "between",  "by",       "case",   "cast",
    "coalesce", "copy",       "count",  "create", "cross",   "default", "desc",     "distinct", "drop",   "else",
    "end",      "escape",     "except", "exists", "explain", "false",   "filter",   "first",    "from",   "full",
    "group",    "having",     "header", "if",     "in",      "index",   "inherits", "inner",    "insert", "intersect",
    "into",     "is",         "join",   "key",    "last",    "lateral", "left",     "like",     "limit",  "max",
    "min",      "not",        "null",   "nulls",  "of",      "offset",  "on",       "or",       "order",  "outer",
    "primary",  "references", "right",  "select", "some",    "sum",     "table",    "then",     "true",   "union",
    "unique",   "using",      "values", "view",   "when",    "where",   "with"};

bool is_part_of_name(char each) {
  return std::isalnum(static_cast<unsigned char>(each)) != 0 || each == '_' || static_cast<signed char>(each) < 0;
}

std::string_view last_word(std::string_view line) {
  std::size_t begin = line.size();
  while (begin > 0 && is_part_of_name(line[begin - 1])) --begin;
  return line.substr(begin);
}

bool begins_with(std::string_view name, std::string_view word) {
  return name.size() >= word.size() && is_same_name(name.substr(0, word.size()), word);
}

// A keyword in the letters that the word is typed in.
std::string typed_like(std::string_view keyword, std::string_view word) {
  std::string text(keyword);
  if (!word.empty() && std::isupper(static_cast<unsigned char>(word.front())) != 0) {
    for (char& each : text) each = static_cast<char>(std::toupper(static_cast<unsigned char>(each)));
  }
  return text;
}

void add_columns(std::set<std::string>& names, ovsql::database& of, const std::string& table) try {
  const ovsql::statement all = of.prepare("SELECT * FROM " + sql_name(table));
  for (std::size_t at = 0; at < all.column_count(); ++at) names.insert(all.column(at).name);
} catch (const ovsql::error&) {
  // A view whose table is gone has no columns.
}

std::set<std::string> names_of(ovsql::database& of) {
  std::set<std::string> names;
  std::vector<std::string> tables = of.tables();
  const std::vector<std::string> views = of.views();
  tables.insert(tables.end(), views.begin(), views.end());
  for (const std::string& each : tables) {
    names.insert(each);
    add_columns(names, of, each);
  }
  return names;
}

completion complete_sql(ovsql::database& of, std::string_view word) {
  completion found{word.size(), {}};
  for (const std::string& each : names_of(of)) {
    if (begins_with(each, word)) found.candidates.push_back(each);
  }
  for (const std::string_view each : keywords) {
    if (!word.empty() && begins_with(each, word)) found.candidates.push_back(typed_like(each, word));
  }
  return found;
}

completion complete_command(std::string_view word) {
  completion found{word.size(), {}};
  for (const dot_command& each : dot_commands()) {
    if (begins_with(each.name, word)) found.candidates.emplace_back(each.name);
  }
  return found;
}

completion complete_mode(std::string_view word) {
  completion found{word.size(), {}};
  for (const output_mode& each : output_modes()) {
    if (begins_with(each.name, word)) found.candidates.emplace_back(each.name);
  }
  return found;
}

}  // namespace

completion complete_word(ovsql::database& of, std::string_view before_cursor) {
  const std::string_view word = last_word(before_cursor);
  if (!before_cursor.starts_with('.')) return complete_sql(of, word);
  if (before_cursor.find(' ') == std::string_view::npos) return complete_command(word);
  return before_cursor.starts_with(".mode ") ? complete_mode(word) : complete_sql(of, word);
}

}  // namespace shell
