#include "test_reader.hpp"

#include <algorithm>

namespace slt {
namespace {

std::string_view take_word(std::string_view& words) {
  const std::size_t begin = std::min(words.find_first_not_of(" \t"), words.size());
  const std::size_t end = std::min(words.find_first_of(" \t", begin), words.size());
  const std::string_view word = words.substr(begin, end - begin);
  words.remove_prefix(end);
  return word;
}

}  // namespace

std::optional<test_record> test_reader::next() {
  test_record record;
  while (take_line()) {
    if (line_.empty() || line_.front() == '#' || is_condition(record)) continue;
    if (begin(record)) return record;
  }
  return std::nullopt;
}

// Takes a line without its end and the blanks before that.
bool test_reader::take_line() {
  if (next_ >= text_.size()) return false;
  line_begin_ = next_;
  const std::size_t end = std::min(text_.find('\n', next_), text_.size());
  line_ = text_.substr(next_, end - next_);
  line_ = line_.substr(0, line_.find_last_not_of(" \t\r") + 1);
  next_ = end + 1;
  ++line_number_;
  words_ = line_;
  return true;
}

bool test_reader::take_line_of_record() { return take_line() && !line_.empty(); }

bool test_reader::is_condition(test_record& record) {
  std::string_view words = line_;
  const std::string_view word = take_word(words);
  if (word != "skipif" && word != "onlyif") return false;
  const bool is_ours = take_word(words) == engine_;
  record.skipped = record.skipped || is_ours == (word == "skipif");
  return true;
}

// Returns false where the line is a setting and no record.
bool test_reader::begin(test_record& record) {
  record.line = line_number_;
  const std::string_view word = take_word(words_);
  if (word == "statement") {
    begin_statement(record);
  } else if (word == "query") {
    begin_query(record);
  } else if (word != "halt" && word != "hash-threshold") {
    throw format_error(line_number_, "\"" + std::string(word) + "\" begins no record");
  }
  // What is expected says itself whether it is a hash.
  return word != "hash-threshold";
}

void test_reader::begin_statement(test_record& record) {
  const std::string_view outcome = take_word(words_);
  if (outcome != "ok" && outcome != "error") throw format_error(line_number_, "a statement is ok or error");
  record.kind = outcome == "ok" ? record_kind::statement : record_kind::failing_statement;
  read_sql(record);
}

void test_reader::begin_query(test_record& record) {
  record.kind = record_kind::query;
  record.types = take_word(words_);
  if (record.types.find_first_not_of("IRT") != std::string_view::npos) {
    throw format_error(line_number_, "the types of a query are I, R and T");
  }
  const std::string_view mode = take_word(words_);
  if (mode == "rowsort") record.sort = sort_mode::rows;
  if (mode == "valuesort") record.sort = sort_mode::values;
  if (!mode.empty() && mode != "nosort" && record.sort == sort_mode::none) {
    throw format_error(line_number_, "\"" + std::string(mode) + "\" is no sort mode");
  }
  record.label = take_word(words_);
  read_sql(record);
  if (line_ == "----") read_expected(record);
}

void test_reader::read_sql(test_record& record) {
  const std::size_t begin = next_;
  std::size_t end = begin;
  while (take_line_of_record() && line_ != "----") end = line_begin_ + line_.size();
  record.sql = text_.substr(begin, end - begin);
}

void test_reader::read_expected(test_record& record) {
  while (take_line_of_record()) record.expected.push_back(line_);
}

}  // namespace slt
