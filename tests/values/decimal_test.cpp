#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <limits>
#include <optional>
#include <random>

#include "outcome.hpp"
#include "ov_sql_executor/values/decimal_arithmetic.hpp"

namespace tests {
namespace {

using integer = boost::multiprecision::cpp_int;
using fraction = boost::multiprecision::cpp_rational;
using operation = Decimal (*)(Decimal, Decimal);

constexpr std::int64_t top = Decimal::max_raw;
constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

std::string run(operation apply, std::int64_t left, std::int64_t right) {
  return outcome([&] { return value(apply({left}, {right})); });
}

TEST(Decimal, operations_round_half_away_from_zero_and_stay_in_range) {
  const struct {
    operation apply;
    std::int64_t left, right;
    const char* result;
  } cases[] = {
      {add, top, 1, "7041"},
      {subtract, -top, 1, "7041"},
      {add, top - 1, 1, "dec4398046511103999999"},
      {add, highest, highest, "7041"},  // beyond 64 bits
      {subtract, lowest, 1, "7041"},
      {add, highest, -highest, "dec0"},  // operands are not checked
      {multiply, 1'500'000, 1'500'000, "dec2250000"},
      {multiply, 1, 500'000, "dec1"},
      {multiply, -1, 500'000, "dec-1"},
      {multiply, 1, 499'999, "dec0"},
      {multiply, 3'000'000'000'000'000'000, 2'000'000, "7041"},
      {multiply, top, 1'000'000, "dec4398046511103999999"},
      {multiply, 1'100'000, 3'998'224'101'003'636'362, "dec4398046511103999998"},
      {multiply, 1'100'000, 3'998'224'101'003'636'363, "7041"},  // 0.3 above the top: judged before rounding
      {multiply, lowest, lowest, "7041"},
      {multiply, lowest, 0, "dec0"},
      {divide, 1'000'000, 3'000'000, "dec333333"},
      {divide, 2'000'000, 3'000'000, "dec666667"},
      {divide, -2'000'000, 3'000'000, "dec-666667"},
      {divide, 0, 5, "dec0"},
      {divide, 5, 0, "7041"},
      {divide, 0, 0, "7041"},
      {divide, top, 1'000'000, "dec4398046511103999999"},
      {divide, top, 999'999, "7041"},
      {divide, top + 1, 2'000'000, "7041"},  // operands are checked
      {divide, 1, lowest, "7041"},
  };
  for (const auto& [apply, left, right, result] : cases) {
    EXPECT_EQ(run(apply, left, right), result) << left << ", " << right;
  }
  EXPECT_EQ(negate({-top}).raw, top);
  EXPECT_EQ(negate({lowest}).raw, lowest);
}

// A number that a Decimal can hold, rounded from the exact one. (Boost's 50-digit decimals are no oracle here: their
// quotient of 3 and 6 is a little below a half.)
std::optional<std::int64_t> to_raw(const fraction& exact) {
  if (abs(exact) > top) return std::nullopt;
  const integer twice = 2 * abs(numerator(exact)) / denominator(exact);
  const auto rounded = ((twice + 1) / 2).convert_to<std::int64_t>();
  return exact < 0 ? -rounded : rounded;
}

// Raw values of all magnitudes, small ones and the edges of the range preferred, some outside.
std::int64_t any_raw(std::mt19937_64& random) {
  const auto bits = static_cast<std::int64_t>(random());
  switch (random() % 8) {
    case 0:
      return bits % 10;
    case 1:
      return (bits % 2 == 0 ? top : -top) + bits % 3;
    case 2:
      return bits % 1'000 * 500'000;
    default:
      return bits >> random() % 64;
  }
}

TEST(Decimal, operations_agree_with_exact_fractions) {
  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  const auto expect = [](operation apply, std::int64_t left, std::int64_t right, const fraction& exact) {
    const auto raw = to_raw(exact);
    EXPECT_EQ(run(apply, left, right), raw ? "dec" + std::to_string(*raw) : "7041") << left << ", " << right;
  };
  for (int round = 0; round < 5'000; ++round) {
    const std::int64_t left = any_raw(random);
    const std::int64_t right = any_raw(random);
    expect(add, left, right, fraction(left) + right);
    expect(subtract, left, right, fraction(left) - right);
    expect(multiply, left, right, fraction(left) * right / Decimal::scale);
    expect(multiply, left, 500'000, fraction(left) / 2);  // halves, by construction
    const bool divides = right != 0 && abs(integer(left)) <= top && abs(integer(right)) <= top;
    if (divides) {
      expect(divide, left, right, fraction(left) * Decimal::scale / right);
    } else {
      EXPECT_EQ(run(divide, left, right), "7041") << left << ", " << right;
    }
  }
}

}  // namespace
}  // namespace tests
