#include "statement_target.hpp"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <set>

namespace slt {
namespace {

bool is_word_character(char each) { return std::isalnum(static_cast<unsigned char>(each)) != 0 || each == '_'; }

char lower(char each) { return static_cast<char>(std::tolower(static_cast<unsigned char>(each))); }
char upper(char each) { return static_cast<char>(std::toupper(static_cast<unsigned char>(each))); }

std::string in_capitals(std::string word) {
  std::transform(word.begin(), word.end(), word.begin(), upper);
  return word;
}

// Returns the end of the text or comment that begins at a byte; that byte's own place where none does.
std::size_t end_of_skipped(std::string_view sql, std::size_t at) {
  std::size_t end = at;
  if (sql[at] == '\'') end = sql.find('\'', at + 1);
  if (sql.substr(at, 2) == "--") end = sql.find('\n', at);
  if (sql.substr(at, 2) == "/*") end = sql.find("*/", at + 2);
  return std::min(end, sql.size());
}

// Words that stand between an action and the name.
bool is_between(const std::string& word) {
  static const std::set<std::string> words = {"or",       "replace", "ignore", "abort",  "fail",
                                              "rollback", "into",    "from",   "temp",   "temporary",
                                              "unique",   "if",      "not",    "exists", "only"};
  return words.count(word) != 0;
}

bool names_a_kind(const std::string& action) { return action == "create" || action == "drop" || action == "alter"; }

bool changes_rows(const std::string& action) {
  return action == "insert" || action == "update" || action == "delete" || action == "replace" || action == "copy";
}

// May change any table, now or at later statements.
bool changes_anything(const std::string& action) {
  return action == "ROLLBACK" || action == "CREATE TRIGGER" || action == "DROP TRIGGER";
}

}  // namespace

std::vector<std::string> words_of(std::string_view sql) {
  std::vector<std::string> words;
  for (std::size_t at = 0; at < sql.size(); ++at) {
    at = end_of_skipped(sql, at);
    if (at == sql.size() || !is_word_character(sql[at])) continue;
    std::string& word = words.emplace_back();
    while (at < sql.size() && is_word_character(sql[at])) word += lower(sql[at++]);
    --at;
  }
  return words;
}

statement_target target_of(std::string_view sql) {
  const std::vector<std::string> words = words_of(sql);
  auto word = words.begin();
  if (word == words.end()) return {};
  statement_target target{in_capitals(*word), {}};
  const bool has_kind = names_a_kind(*word);
  if (!has_kind && !changes_rows(*word) && target.action != "ROLLBACK") return {};
  word = std::find_if_not(word + 1, words.end(), is_between);
  if (has_kind && word != words.end()) {
    target.action += " " + in_capitals(*word);
    word = std::find_if_not(word + 1, words.end(), is_between);
  }
  target.name = changes_anything(target.action) || word == words.end() ? "*" : *word;
  return target;
}

}  // namespace slt
