#include "text/script_scan.hpp"

#include <algorithm>

namespace shell {
namespace {

constexpr std::string_view blanks = " \t\r\n\f\v";

bool is_blank(char each) { return blanks.find(each) != std::string_view::npos; }

// Returns the byte behind the comment that begins at a byte, or that byte; script.size() + 1 where the comment does not
// end. Comments between /* and */ nest.
std::size_t skip_comment(std::string_view script, std::size_t at) {
  if (script.substr(at, 2) == "--") return std::min(script.find('\n', at), script.size());
  if (script.substr(at, 2) != "/*") return at;
  std::size_t depth = 0;
  for (; at < script.size(); ++at) {
    const std::string_view two = script.substr(at, 2);
    if (two == "/*") ++depth, ++at;
    if (two == "*/" && --depth == 0) return at + 2;
    if (two == "*/") ++at;
  }
  return script.size() + 1;
}

// Returns the byte behind a quoted text or name; script.size() + 1 where the quote does not end.
std::size_t skip_quoted(std::string_view script, std::size_t at) {
  const std::size_t end = script.find(script[at], at + 1);
  return end == std::string_view::npos ? script.size() + 1 : end + 1;
}

bool is_quote(char each) { return each == '\'' || each == '"'; }

// As skip_blanks_and_comments, but script.size() + 1 where a comment does not end.
std::size_t skip_what_says_nothing(std::string_view script, std::size_t at) {
  while (at < script.size()) {
    const std::size_t next = is_blank(script[at]) ? at + 1 : skip_comment(script, at);
    if (next == at) break;
    at = next;
  }
  return at;
}

}  // namespace

std::size_t skip_blanks_and_comments(std::string_view script, std::size_t at) {
  return std::min(skip_what_says_nothing(script, at), script.size());
}

bool is_complete(std::string_view script) {
  bool complete = true;
  std::size_t at = skip_what_says_nothing(script, 0);
  while (at < script.size()) {
    complete = script[at] == ';';
    at = is_quote(script[at]) ? skip_quoted(script, at) : at + 1;
    at = skip_what_says_nothing(script, at);
  }
  return complete && at == script.size();
}

std::vector<std::string> split_words(std::string_view line) {
  std::vector<std::string> words;
  for (std::size_t at = 0; at < line.size();) {
    if (is_blank(line[at])) {
      ++at;
      continue;
    }
    std::string& word = words.emplace_back();
    while (at < line.size() && !is_blank(line[at])) {
      if (!is_quote(line[at])) {
        word += line[at++];
        continue;
      }
      const std::size_t end = std::min(line.find(line[at], at + 1), line.size());
      word += line.substr(at + 1, end - at - 1);
      at = end + 1;
    }
  }
  return words;
}

}  // namespace shell
