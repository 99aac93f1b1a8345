// What a file of separated values is taken for.
#include "ovhost/csv/csv_survey.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "ovhost/csv/csv_loader.hpp"

namespace ovhost {
namespace {

csv_survey survey(const std::string& text, const csv_survey_options& options = {}) {
  std::istringstream input(text);
  return survey_csv(input, "f.csv", options.separator.value_or(','), options);
}

// The kind of a column of the fields of a text, between spaces.
std::string kind_of_fields(const std::string& fields) {
  std::string file = "heading,\n";
  std::istringstream words(fields);
  for (std::string field; words >> field;) file += field + ",\n";
  return std::string(name_of(survey(file).columns.front().kind));
}

TEST(CsvSurvey, FindsTheNarrowestKindThatKeepsEveryDigit) {
  const std::pair<const char*, const char*> cases[] = {{"1 -2 0", "int64"},
                                                       {"9223372036854775807 -9223372036854775808", "int64"},
                                                       {"1 2.5", "decimal"},
                                                       {"2.5 1", "decimal"},
                                                       {"0.000001 -4398046511103.999999", "decimal"},
                                                       {"0.0000001", "double"},
                                                       {"4398046511104.5", "double"},
                                                       {"1.5 2e-3 .5", "double"},
                                                       {"true FALSE True", "bool"},
                                                       // A double would lose digits of these.
                                                       {"9223372036854775808", "text"},
                                                       {"1.5 9223372036854775808", "text"},
                                                       {"00501 10001", "text"},
                                                       {"-007", "text"},
                                                       {"01.5", "text"},
                                                       // What only looks like numbers.
                                                       {"1 true", "text"},
                                                       {"inf", "text"},
                                                       {"nan", "text"},
                                                       {"0x1F", "text"},
                                                       {"+5", "text"},
                                                       {"1-2", "text"},
                                                       {"-", "text"},
                                                       {"1e999", "text"},
                                                       {"2024-05-01", "text"},
                                                       {"12:30", "text"},
                                                       {"", "text"}};
  for (const auto& [fields, kind] : cases) {
    EXPECT_EQ(kind_of_fields(fields), kind) << fields;
  }
}

TEST(CsvSurvey, LeavesOutWhatIsNull) {
  const csv_survey with_word = survey("a,b\nNA,\n1,\"\"\n,x\n", {.null_words = {"NA"}});
  EXPECT_EQ(with_word.columns[0].kind, value_kind::int64);
  EXPECT_EQ(with_word.columns[1].kind, value_kind::text);
  EXPECT_EQ(with_word.rows, 3U);
  EXPECT_EQ(survey("a\n 1 \n2\n").columns[0].kind, value_kind::int64) << "blanks around a number";
  EXPECT_EQ(survey("a,b\n\"\",1\n2,1\n").columns[0].kind, value_kind::text) << "a quoted empty field is a text";
}

TEST(CsvSurvey, TellsHeadingsFromRows) {
  const csv_survey without = survey("1,x\n2,y\n", {.headings = false});
  EXPECT_EQ(without.rows, 2U);
  EXPECT_EQ(without.columns[0].heading, "");
  const csv_survey with = survey("\xEF\xBB\xBFone,,\"a \"\"b\"\"\"\r\n1,2,3\r\n");
  EXPECT_EQ(with.columns[0].heading, "one");
  EXPECT_EQ(with.columns[1].heading, "");
  EXPECT_EQ(with.columns[2].heading, "a \"b\"");
  EXPECT_EQ(survey("only,headings\n").rows, 0U);
}

TEST(CsvSurvey, SaysWhereAFileIsWrong) {
  using std::string_literals::operator""s;
  const std::pair<std::string, std::string> cases[] = {
      {"", "f.csv:1: the file is empty"},
      {"a,b\n1,2\n3\n", "f.csv:3: 1 fields where the first row has 2"},
      {"a,b\n1,2,3\n", "f.csv:2: 3 fields where the first row has 2"},
      {"a,b\n1,\xFF\n", "f.csv:2: column b: the text is not UTF-8"},
      {"a,\xC3(\n", "f.csv:1: column 2: the text is not UTF-8"},
      {"a,b\n\"x\ny\",1\n\"z\0\",1\n"s, "f.csv:4: column a: the text holds a zero character"},
      {"a\nx\"y\n", "f.csv:2: a quote stands inside a field"},
      {"a\n\"x\n", "f.csv:2: a quoted field does not end"}};
  for (const auto& [text, message] : cases) {
    try {
      survey(text);
      ADD_FAILURE() << text;
    } catch (const csv_error& error) {
      EXPECT_EQ(error.what(), message);
    }
  }
  EXPECT_THROW(survey_csv_file("no/such/file.csv"), csv_error);
}

TEST(CsvSurvey, ChecksWhatTheCallerTakesColumnsFor) {
  const csv_survey_options numbers = {.null_words = {"-"}, .kinds = {std::nullopt, value_kind::int64}};
  EXPECT_EQ(survey("a,b,c\nx,1,y\nx,-,y\nx,,y\n", numbers).rows, 3U);
  try {
    survey("a,b\nx,1\nx,y\n", numbers);
    ADD_FAILURE();
  } catch (const csv_error& error) {
    EXPECT_STREQ(error.what(), "f.csv:3: column b: \"y\" is not a value of type int64");
  }
}

TEST(CsvSurvey, GuessesTheSeparator) {
  const std::pair<const char*, char> cases[] = {{"a,b\n1,2\n", ','},
                                                {"a;b\n1,5;2,5\n", ';'},
                                                {"a\tb, c\n1\t2\n", '\t'},
                                                {"a|b|c\n1|2,0|3\n", '|'},
                                                {"\"a;b\",c\n\"1;2\",3\n", ','},
                                                {"one\n1\n", ','},
                                                {"", ','},
                                                {"a;b\n1;2\n3;\"cut", ';'}};
  for (const auto& [text, separator] : cases) EXPECT_EQ(guess_separator(text), separator) << text;
}

}  // namespace
}  // namespace ovhost
