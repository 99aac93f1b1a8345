// What the shell knows about texts, scripts and its command line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "command_line.hpp"
#include "sql_names.hpp"
#include "text/display_width.hpp"
#include "text/script_scan.hpp"

namespace shell {
namespace {

using testing::ElementsAre;

TEST(DisplayWidth, CountsColumnsOfTheTerminal) {
  const std::pair<const char*, std::size_t> cases[] = {
      {"", 0},         {"abc", 3},
      {"Zürich", 6},   {"Zu\u0308rich", 6},        // u and a combining diaeresis
      {"東京", 4},                                 // wide
      {"ｶﾅ", 2},                                   // half as wide
      {"🙂!", 3},    {"\u1112\u1161\u11ab", 2},  // three letters of one syllable
      {"a\u200bb", 2},                             // a space without width
      {"a\xFFz", 3}};
  for (const auto& [text, width] : cases) EXPECT_EQ(display_width(text), width) << text;
}

TEST(DisplayWidth, CutsToIt) {
  EXPECT_EQ(cut_to_width("abcd", 4), "abcd");
  EXPECT_EQ(cut_to_width("abcde", 4), "abc…");
  EXPECT_EQ(cut_to_width("abc", 1), "…");
  EXPECT_EQ(cut_to_width("東京都", 5), "東京…");
  EXPECT_EQ(cut_to_width("東京都", 4), "東…") << "half of a wide character is not shown";
  EXPECT_EQ(cut_to_width("e\u0301e\u0301e\u0301", 2), "e\u0301…") << "a letter keeps its accent";
}

TEST(ScriptScan, KnowsWhenAStatementIsComplete) {
  for (const char* const complete : {"", "  -- only a comment", "SELECT 1;", "SELECT 1; -- done", "SELECT ';';",
                                     "SELECT \"a;\"\"b\"; /* ; */", "a; b;", "/* /* nested */ */ x;"}) {
    EXPECT_TRUE(is_complete(complete)) << complete;
  }
  for (const char* const open : {"SELECT 1", "SELECT ';", "SELECT 'a'';", "a; b", "SELECT 1 -- ;", "SELECT /* ;",
                                 "SELECT \";", "/* /* nested */ ; x"}) {
    EXPECT_FALSE(is_complete(open)) << open;
  }
}

TEST(ScriptScan, SkipsBlanksAndComments) {
  const std::string script = " -- one\n\t/* two /* three */ */ x";
  EXPECT_EQ(script.substr(skip_blanks_and_comments(script, 0)), "x");
  EXPECT_EQ(skip_blanks_and_comments("-x", 0), 0U);
  EXPECT_EQ(skip_blanks_and_comments("/* open", 0), 7U);
}

TEST(ScriptScan, CutsCommandLinesIntoWords) {
  EXPECT_THAT(split_words(" mode  csv\r"), ElementsAre("mode", "csv"));
  EXPECT_THAT(split_words("import 'my file.csv' \"a \"b --null ''"),
              ElementsAre("import", "my file.csv", "a b", "--null", ""));
  EXPECT_THAT(split_words("read 'open end"), ElementsAre("read", "open end"));
  EXPECT_THAT(split_words(" \t"), ElementsAre());
}

TEST(CommandLine, IsRead) {
  const command_line wanted = read_command_line({"-c", "SELECT 1", "--json", "-f", "-", "--bail", "-c", ".q"});
  ASSERT_EQ(wanted.scripts.size(), 3U);
  EXPECT_EQ(wanted.scripts[0].text, "SELECT 1");
  EXPECT_TRUE(wanted.scripts[1].is_file);
  EXPECT_EQ(wanted.scripts[2].text, ".q");
  EXPECT_EQ(wanted.mode->name, "json");
  EXPECT_TRUE(wanted.bail);
  EXPECT_TRUE(wanted.headers);
}

TEST(CommandLine, IsRefused) {
  const std::vector<std::string> cases[] = {
      {"-c"},     {"--mode", "pretty"}, {"--nothing"}, {"-x"}, {"--database", "my.db"}, {"no/such/file.csv"},
      {"--mode"}, {"SELECT 1"}};
  for (const auto& each : cases) EXPECT_THROW(read_command_line(each), bad_usage) << each.front();
}

TEST(SqlNames, AreQuotedWhereTheyNeedIt) {
  EXPECT_EQ(sql_name("Town_2"), "Town_2");
  EXPECT_EQ(sql_name("2nd"), "\"2nd\"");
  EXPECT_EQ(sql_name("a \"b\""), "\"a \"\"b\"\"\"");
  EXPECT_TRUE(is_same_name("Town", "tOWN"));
  EXPECT_FALSE(is_same_name("Town", "Towns"));
}

}  // namespace
}  // namespace shell
