#include "ov_sql_executor/values/like_pattern.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "expressions/naive_like.hpp"
#include "outcome.hpp"

namespace tests {
namespace {

std::string match(std::u16string_view text, std::u16string_view pattern) {
  return outcome([&] { return value(matches_like(text, pattern)); });
}

TEST(LikePattern, wildcards_and_escapes) {
  const struct {
    const char16_t* text;
    const char16_t* pattern;
    const char* result;
  } cases[] = {
      {u"abc", u"a_c", "true"},
      {u"abc", u"%c", "true"},
      {u"abc", u"abcd", "false"},
      {u"a", u"", "false"},
      {u"", u"%", "true"},
      {u"a", u"a%%", "true"},  // the empty rest of the text is tried
      {u"", u"%%", "true"},
      {u"a", u"a%_", "false"},
      {u"a%", u"a\\%", "true"},
      {u"ab", u"a\\%", "false"},
      {u"\\", u"\\\\", "true"},
      {u"x_y", u"%\\_%", "true"},
      {u"aab", u"%ab", "true"},
      {u"abcabd", u"%ab_", "true"},  // the last part fits at the end only
      {u"mississippi", u"%iss%ip%i", "true"},
      {u"mississippi", u"%iss%iss%iss%", "false"},
      {u"\xD83D\xDE00", u"_", "true"},
      {u"\xD83D\xDE00", u"__", "false"},
      {u"\xD83D", u"_", "false"},        // half a pair, and nothing behind it
      {u"\xD83D\xDE00", u"%_", "true"},  // also from within the pair
      {u"\xD83D\xDE00", u"%\xDE00", "true"},
      {u"anything", u"a\\b", "7042"},
      {u"anything", u"z\\", "7042"},
      {u"", u"%\\\\\\", "7042"},
  };
  for (const auto& [text, pattern, result] : cases) {
    EXPECT_EQ(match(text, pattern), result) << spell(value(SetSpecifier{text})) << spell(value(SetSpecifier{pattern}));
  }
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
    const std::u16string text = units(u"aab%_\\\xD83D\xDE00", 9);
    std::u16string pattern;
    for (const char16_t unit : units(u"aab%%_\\\xD83D\xDE00", 8)) {
      pattern += unit;
      if (unit == u'\\') pattern += u"%_\\"[random() % 3];
    }
    const bool expected = naive_like(text, pattern);
    matched += expected ? 1 : 0;
    ASSERT_EQ(matches_like(text, pattern), expected)
        << spell(value(SetSpecifier{text})) << ", " << spell(value(SetSpecifier{pattern}));
  }
  EXPECT_GT(matched, 5'000);
}

// Each of these would keep a matcher that backtracks over every % busy for years.
TEST(LikePattern, hostile_patterns_end) {
  const std::u16string text(100'000, u'a');
  for (const char16_t* part : {u"%a", u"%_", u"%aa_a"}) {
    std::u16string pattern;
    for (int wildcards = 0; wildcards < 30; ++wildcards) pattern += part;
    EXPECT_TRUE(matches_like(text, pattern));
    EXPECT_FALSE(matches_like(text, pattern + u"b"));
    EXPECT_FALSE(matches_like(text, pattern + u"b%"));
  }
}

}  // namespace
}  // namespace tests
