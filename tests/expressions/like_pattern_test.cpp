#include "ov_sql_executor/values/like_pattern.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "expressions/naive_like.hpp"
#include "outcome.hpp"

namespace tests {
namespace {

TEST(LikePattern, wildcards_and_escapes) {
  const auto expect = [](const char* result, std::initializer_list<std::u16string> cases) {
    for (const std::u16string& each : cases) {
      const std::size_t bar = each.find(u'|');
      const std::string found = outcome([&] { return value(matches_like(each.substr(0, bar), each.substr(bar + 1))); });
      EXPECT_EQ(found.substr(0, found.find(' ')), result) << spell_units("", each);
    }
  };
  expect("true", {u"|%%", u"x_y|%\\_%", u"\\|\\\\", u"mississippi|%iss%ip%i", u"\xD83D\xDE00|_", u"\xD83D\xDE00|%_"});
  expect("false", {u"abc|abcd", u"a|", u"a|a%_", u"ab|a\\%", u"mississippi|%iss%iss%iss%", u"\xD83D|_"});
  expect("7042", {u"anything|a\\b", u"anything|z\\", u"|%\\\\\\"});
}

// Texts and patterns in which much nearly matches.
TEST(LikePattern, agrees_with_the_recursive_definition) {
  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const auto units = [&random](std::u16string_view from, std::size_t up_to) {
    std::u16string drawn(random() % (up_to + 1), u'\0');
    for (char16_t& unit : drawn) unit = from[random() % from.size()];
    return drawn;
  };
  int matched = 0;
  for (int round = 0; round < 100'000; ++round) {
    const std::u16string subject = units(u"aab%_\\\xD83D\xDE00", 9);
    std::u16string pattern;
    for (const char16_t unit : units(u"aab%%_\\\xD83D\xDE00", 8)) {
      pattern += unit;
      if (unit == u'\\') pattern += u"%_\\"[random() % 3];
    }
    const bool expected = naive_like(subject, pattern);
    matched += expected ? 1 : 0;
    ASSERT_EQ(matches_like(subject, pattern), expected) << spell_units("", subject) << ", " << spell_units("", pattern);
  }
  EXPECT_GT(matched, 5'000);
}

// Each of these would keep a matcher that backtracks over every % busy for years.
TEST(LikePattern, hostile_patterns_end) {
  const std::u16string subject(100'000, u'a');
  for (const char16_t* part : {u"%a", u"%_", u"%aa_a"}) {
    std::u16string pattern;
    for (int wildcards = 0; wildcards < 30; ++wildcards) pattern += part;
    EXPECT_TRUE(matches_like(subject, pattern));
    EXPECT_FALSE(matches_like(subject, pattern + u"b"));
    EXPECT_FALSE(matches_like(subject, pattern + u"b%"));
  }
}

}  // namespace
}  // namespace tests
