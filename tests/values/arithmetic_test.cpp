#include "ov_sql_executor/values/arithmetic.hpp"

#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <limits>
#include <random>

#include "outcome.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

using binary_operation = value_view (*)(const value_view&, const value_view&);

std::string calculated(binary_operation apply, const value& left, const value& right) {
  return outcome([&] { return apply(view_of(left), view_of(right)); });
}

binary_operation operation_of(char sign) {
  return sign == '+' ? add_values : sign == '-' ? subtract_values : sign == '*' ? multiply_values : divide_values;
}

// Every pair of alternatives: what the sum of one of each is, or the error.
TEST(Arithmetic, every_pair_of_alternatives) {
  row samples = vals("true 'a' u2 i3 dec4000000 d5 f6 x'01' ref1 set'a' NULL");
  samples.push_back(valueless());
  // The right alternatives in the same order; the row of a valueless left one says that of every pair.
  const char* const sums[] = {"7020 7020 7020 i4 dec5000000 d6 f7 7020 7020 7020 NULL",
                              "7020 7020 7020 7020 7020 7020 7020 7020 7020 7020 NULL",
                              "7020 7020 i4 i5 dec6000000 d7 f8 7020 7020 7020 NULL",
                              "i4 7020 i5 i6 dec7000000 d8 f9 7020 7020 7020 NULL",
                              "dec5000000 7020 dec6000000 dec7000000 dec8000000 d9 f10 7020 7020 7020 NULL",
                              "d6 7020 d7 d8 d9 d10 d11 7020 7020 7020 NULL",
                              "f7 7020 f8 f9 f10 d11 f12 7020 7020 7020 NULL",
                              "7020 7020 7020 7020 7020 7020 7020 7020 7020 7020 NULL",
                              "7020 7020 7020 7020 7020 7020 7020 7020 7020 7020 NULL",
                              "7020 7020 7020 7020 7020 7020 7020 7020 7020 7020 NULL",
                              "NULL NULL NULL NULL NULL NULL NULL NULL NULL NULL NULL"};
  for (std::size_t left = 0; left < samples.size(); ++left) {
    std::vector<std::string> row_of_sums(samples.size(), bad_variant);
    if (left < std::size(sums)) row_of_sums = split(sums[left]);
    row_of_sums.resize(samples.size(), bad_variant);
    for (std::size_t right = 0; right < samples.size(); ++right) {
      const std::string& sum = row_of_sums[right];
      EXPECT_EQ(calculated(add_values, samples[left], samples[right]), sum) << left << ", " << right;
      for (const char other : {'-', '*', '/'}) {  // they accept the same pairs
        const std::string result = calculated(operation_of(other), samples[left], samples[right]);
        EXPECT_EQ(result.substr(0, 1), sum.substr(0, 1)) << left << other << right;
      }
    }
  }
}

TEST(Arithmetic, promotion_keeps_pairs_of_one_alternative) {
  for (const char* each : {"true false -> true false", "true u5 -> u1 u5", "u5 u6 -> i5 i6", "NULL x'01' -> NULL NULL",
                           "set'a' set'b' -> set'a' set'b'", "x'01' ref1 -> 7020"}) {
    const std::vector<std::string> words = split(each);
    const row operands = {val(words[0]), val(words[1])};
    const std::string both = outcome([&] {
      const promoted_pair pair = promote_pair(view_of(operands[0]), view_of(operands[1]));
      return spell(pair.left) + " " + spell(pair.right);
    });
    EXPECT_EQ(words[0] + " " + words[1] + " -> " + both, each);
  }
}

TEST(Arithmetic, edges) {
  const char* const cases[] = {"NULL / i0 = NULL", "'a' * i1 = 7020", "u9223372036854775808 + i0 = 7041",
                               "u9223372036854775808 + d0 = d9223372036854775808", "i4398046511104 + dec0 = 7041",
                               "u4398046511104 + f0 = f4398046511104", "i3 + dec500000 = dec3500000",
                               "true * d2.5 = d2.5", "i5 / i0 = 7041", "i0 / i0 = 7041", "i-7 / i2 = i-3",
                               "dec1 / u0 = 7041", "d5 / i0 = dinf", "d1.7e308 + d1.7e308 = dinf",
                               // In single precision, not through double.
                               "f16777216 + f1 = f16777216", "f1 / i3 = f0.33333334", "dec1500000 + f1 = f2.5"};
  for (const char* each : cases) {
    const std::vector<std::string> words = split(each);
    EXPECT_EQ(calculated(operation_of(words[1][0]), val(words[0]), val(words[2])), words[4]) << each;
  }
  const std::string difference = calculated(subtract_values, val("dinf"), val("dinf"));
  EXPECT_TRUE(difference.ends_with("nan")) << "of either sign: " << difference;
}

TEST(Arithmetic, negation) {
  const auto negated = [](const value& number) { return outcome([&] { return negate_value(view_of(number)); }); };
  for (const char* each :
       {"i5 i-5", "i-9223372036854775808 7041", "u5 i-5", "u0 i0", "u9223372036854775808 7041",
        "u9223372036854775807 i-9223372036854775807", "dec-3 dec3", "d0 d-0", "f2.5 f-2.5", "dnan d-nan", "NULL NULL",
        "true 7020", "'a' 7020", "x'01' 7020", "ref1 7020", "set'a' 7020"}) {
    const std::vector<std::string> words = split(each);
    EXPECT_EQ(negated(val(words[0])), words[1]) << each;
  }
  EXPECT_EQ(negated(valueless()), bad_variant);
}

TEST(Arithmetic, integers_agree_with_unbounded_ones) {
  using boost::multiprecision::cpp_int;
  using limits = std::numeric_limits<std::int64_t>;
  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  const auto any = [&random] {
    const auto bits = static_cast<std::int64_t>(random());
    const std::int64_t near_an_end = bits % 2 == 0 ? limits::min() + (bits >> 1 & 3) : limits::max() - (bits >> 1 & 3);
    const std::uint64_t kind = random() % 4;
    return kind == 0 ? bits % 5 : kind == 1 ? near_an_end : bits >> random() % 64;
  };
  for (int round = 0; round < 20'000; ++round) {
    const std::int64_t left = any();
    const std::int64_t right = any();
    const auto expect = [&](binary_operation apply, const cpp_int& exact) {
      const bool fits = exact >= limits::min() && exact <= limits::max();
      EXPECT_EQ(calculated(apply, i(left), i(right)), fits ? "i" + exact.str() : "7041") << left << ", " << right;
    };
    expect(add_values, cpp_int(left) + right);
    expect(subtract_values, cpp_int(left) - right);
    expect(multiply_values, cpp_int(left) * right);
    if (right != 0) expect(divide_values, cpp_int(left) / right);
  }
}

}  // namespace
}  // namespace tests
