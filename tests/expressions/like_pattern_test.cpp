#include "ov_sql_executor/values/like_pattern.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "expressions/naive_like.hpp"
#include "outcome.hpp"

namespace tests {
namespace {

TEST(LikePattern, wildcards_and_escapes) {
  // H and L stand for the halves of a surrogate pair.
  const char* const cases[] = {"'abc' 'a_c' true",
                               "'abc' '%c' true",
                               "'abc' 'abcd' false",
                               "'a' '' false",
                               "'' '%' true",
                               "'a' 'a%%' true",  // the empty rest of the text is tried
                               "'' '%%' true",
                               "'a' 'a%_' false",
                               "'a%' 'a\\%' true",
                               "'ab' 'a\\%' false",
                               "'\\' '\\\\' true",
                               "'x_y' '%\\_%' true",
                               "'aab' '%ab' true",
                               "'abcabd' '%ab_' true",  // the last part fits at the end only
                               "'mississippi' '%iss%ip%i' true",
                               "'mississippi' '%iss%iss%iss%' false",
                               "'HL' '_' true",
                               "'HL' '__' false",
                               "'H' '_' false",   // half a pair, and nothing behind it
                               "'HL' '%_' true",  // also from within the pair
                               "'HL' '%L' true",
                               "'anything' 'a\\b' 7042",
                               "'anything' 'z\\' 7042",
                               "'' '%\\\\\\' 7042"};
  for (const char* each : cases) {
    std::vector<std::u16string> units;
    for (const std::string& word : split(each)) {
      units.emplace_back(word.begin() + 1, word.end() - 1);
      std::replace(units.back().begin(), units.back().end(), u'H', u'\xD83D');
      std::replace(units.back().begin(), units.back().end(), u'L', u'\xDE00');
    }
    const std::string result = outcome([&] { return value(matches_like(units[0], units[1])); });
    EXPECT_EQ(split(result)[0], split(each)[2]) << each;
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
