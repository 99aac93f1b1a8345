#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <optional>
#include <random>

#include "outcome.hpp"
#include "ov_sql_executor/values/decimal_arithmetic.hpp"

namespace tests {
namespace {

using fraction = boost::multiprecision::cpp_rational;
using decimal_operation = Decimal (*)(Decimal, Decimal);

constexpr std::int64_t top = Decimal::max_raw;

std::string calculated(decimal_operation apply, std::int64_t left, std::int64_t right) {
  return outcome([&] { return spell(value(apply({left}, {right}))).substr(3); });
}

TEST(DecimalArithmetic, rounds_half_away_from_zero_and_stays_in_range) {
  const char* const cases[] = {
      "top + 1 = 7041", "-top - 1 = 7041", "4398046511103999998 + 1 = 4398046511103999999", "min - 1 = 7041",
      // Beyond 64 bits; and operands are not checked.
      "max + max = 7041", "max + -max = 0",
      // A half rounds away from zero.
      "1500000 * 1500000 = 2250000", "1 * 500000 = 1", "-1 * 500000 = -1", "1 * 499999 = 0", "min * min = 7041",
      "3000000000000000000 * 2000000 = 7041", "top * 1000000 = 4398046511103999999", "min * 0 = 0",
      // The second is 0.3 above the top: judged before rounding.
      "1100000 * 3998224101003636362 = 4398046511103999998", "1100000 * 3998224101003636363 = 7041",
      "1000000 / 3000000 = 333333", "2000000 / 3000000 = 666667", "-2000000 / 3000000 = -666667", "0 / 5 = 0",
      "5 / 0 = 7041", "0 / 0 = 7041", "top / 1000000 = 4398046511103999999", "top / 999999 = 7041",
      // Operands of a division are checked.
      "4398046511104000000 / 2000000 = 7041", "1 / min = 7041"};
  const auto number = [](const std::string& word) -> std::int64_t {
    if (word == "min") return INT64_MIN;
    if (word.ends_with("max")) return word[0] == '-' ? -INT64_MAX : INT64_MAX;
    return word == "top" ? top : word == "-top" ? -top : number_in<std::int64_t>(word);
  };
  for (const char* each : cases) {
    const std::vector<std::string> words = split(each);
    const char sign = words[1][0];
    const decimal_operation apply = sign == '+' ? add : sign == '-' ? subtract : sign == '*' ? multiply : divide;
    EXPECT_EQ(calculated(apply, number(words[0]), number(words[2])), words[4]) << each;
  }
  EXPECT_EQ(negate({-top}).raw, top);
  EXPECT_EQ(negate({INT64_MIN}).raw, INT64_MIN);
}

// A number that a Decimal can hold, rounded from the exact one; or the error. (Boost's 50-digit decimals are no oracle
// here: their quotient of 3 and 6 is a little below a half.)
std::string rounded(const fraction& exact) {
  if (abs(exact) > top) return "7041";
  const boost::multiprecision::cpp_int twice = 2 * abs(numerator(exact)) / denominator(exact);
  const auto size = ((twice + 1) / 2).convert_to<std::int64_t>();
  return std::to_string(exact < 0 ? -size : size);
}

// Raw values of all magnitudes, small ones and the edges of the range preferred, some outside.
std::int64_t any_raw(std::mt19937_64& random) {
  const auto bits = static_cast<std::int64_t>(random());
  const std::uint64_t kind = random() % 8;
  if (kind == 0) return bits % 10;
  if (kind == 1) return (bits % 2 == 0 ? top : -top) + bits % 3;
  return kind == 2 ? bits % 1'000 * 500'000 : bits >> random() % 64;
}

TEST(DecimalArithmetic, agrees_with_exact_fractions) {
  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  for (int round = 0; round < 5'000; ++round) {
    const std::int64_t left = any_raw(random);
    const std::int64_t right = any_raw(random);
    SCOPED_TRACE(std::to_string(left) + ", " + std::to_string(right));
    EXPECT_EQ(calculated(add, left, right), rounded(fraction(left) + right));
    EXPECT_EQ(calculated(subtract, left, right), rounded(fraction(left) - right));
    EXPECT_EQ(calculated(multiply, left, right), rounded(fraction(left) * right / Decimal::scale));
    EXPECT_EQ(calculated(multiply, left, 500'000), rounded(fraction(left) / 2)) << "halves, by construction";
    const bool divides = right != 0 && abs(fraction(left)) <= top && abs(fraction(right)) <= top;
    EXPECT_EQ(calculated(divide, left, right), divides ? rounded(fraction(left) * Decimal::scale / right) : "7041");
  }
}

}  // namespace
}  // namespace tests
