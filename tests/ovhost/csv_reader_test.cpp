#include "ovhost/csv_reader.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace ovhost {
namespace {

// Fields in brackets, ~ for nothing, each row after the number of its line: "1[a][~] 2[b]".
std::string read_all(const std::string& text) {
  std::istringstream input(text);
  csv_reader reader(input);
  std::string result;
  while (const auto row = reader.next()) {
    result += (result.empty() ? "" : " ") + std::to_string(row->line);
    for (const csv_field& field : row->fields) result += "[" + field.value_or("~") + "]";
  }
  return result;
}

TEST(CsvReader, SplitsRowsAndFields) {
  const struct {
    const char* why;
    std::string text;
    std::string rows;
  } cases[] = {
      {"nothing", "", ""},
      {"last line without an end", "a,b\nc,d", "1[a][b] 2[c][d]"},
      {"CRLF", "a,b\r\nc,d\r\n", "1[a][b] 2[c][d]"},
      {"empty is nothing, quoted empty is a text", "a,,\"\",\n", "1[a][~][][~]"},
      {"quotes hold separators and doubled quotes", "\"a,b\",\"c\"\"d\"\n", "1[a,b][c\"d]"},
      {"quotes hold line ends", "\"a\r\nb\",c\nd,e\n", "1[a\r\nb][c] 3[d][e]"},
      {"blanks belong to the field", " a , b\n", "1[ a ][ b]"},
      {"empty lines are skipped and counted", "\n\na\n\r\nb\n", "3[a] 5[b]"},
      {"byte order mark", "\xEF\xBB\xBFname\nAda\n", "1[name] 2[Ada]"},
      {"bytes beyond ASCII pass", "Zürich,東京\n", "1[Zürich][東京]"},
  };
  for (const auto& each : cases) EXPECT_EQ(read_all(each.text), each.rows) << each.why;
}

TEST(CsvReader, ReportsTheLineOfBadQuotes) {
  const struct {
    std::string text;
    std::size_t line;
  } cases[] = {{"a\nb\"c\n", 2}, {"a\n\"b\"c\n", 2}, {"a\nb\n\"c\nd\n", 3}, {"\"", 1}};
  for (const auto& each : cases) {
    try {
      read_all(each.text);
      ADD_FAILURE() << each.text;
    } catch (const csv_syntax_error& error) {
      EXPECT_EQ(error.line, each.line) << each.text;
    }
  }
}

}  // namespace
}  // namespace ovhost
