#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <map>
#include <random>

#include "outcome.hpp"
#include "ov_sql_executor/values/arithmetic.hpp"
#include "ov_sql_executor/values/conversion.hpp"
#include "ov_sql_executor/values/decimal_arithmetic.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

using conversion = value (*)(const value&);
const std::pair<const char*, conversion> conversions[] = {
    {"bool", convert_to<bool>},       {"text", convert_to<db_string::tt_string>},
    {"u", convert_to<std::uint64_t>}, {"i", convert_to<std::int64_t>},
    {"dec", convert_to<Decimal>},     {"d", convert_to<double>},
    {"f", convert_to<float>},         {"x", convert_to<Binary>},
    {"ref", convert_to<OV_OBJ_REF>}};

// Every pair of alternatives: what each source becomes in the order of the targets above.
TEST(Conversion, every_pair_of_alternatives) {
  for (const char* each :
       {"true true 7020 u1 i1 dec1000000 d1 f1 7020 7020", "'a' 1027 'a' 1027 1027 1027 1027 1027 7020 7020",
        "u2 true 7020 u2 i2 dec2000000 d2 f2 7020 7020", "i2 true 7020 u2 i2 dec2000000 d2 f2 7020 7020",
        "dec2700000 true 7020 u2 i2 dec2700000 d2.7 f2.7 7020 7020", "d2.5 true 7020 u2 i2 1027 d2.5 1027 7020 7020",
        "f2.5 true 7020 u2 i2 1027 d2.5 f2.5 7020 7020", "x'0102' 7020 7020 7020 7020 7020 7020 7020 x'0102' 7020",
        "ref7 7020 7020 7020 7020 7020 7020 7020 7020 ref7", "set'ab' 7020 7020 7020 7020 7020 7020 7020 7020 7020",
        "NULL NULL NULL NULL NULL NULL NULL NULL NULL NULL"}) {
    std::string found = split(each)[0];
    const value source = val(found);
    for (const auto& [name, convert] : conversions)
      found += " " + outcome([&to = convert, &source] { return to(source); });
    EXPECT_EQ(found, each);
  }
  for (const auto& [name, convert] : conversions) {
    EXPECT_EQ(outcome([&to = convert] { return to(valueless()); }), bad_variant) << name;
  }
}

TEST(Conversion, edges) {
  // Of each target: sources and what becomes of them.
  const std::pair<const char*, const char*> cases[] = {
      {"bool", "d-0=false dnan=true f0=false dec1=true u0=false"},
      {"i",
       "u9223372036854775807=i9223372036854775807 u9223372036854775808=7041 "
       "d9223372036854774784=i9223372036854774784 d9223372036854775808=7041 "
       "d-9223372036854775808=i-9223372036854775808 d-9223372036854777856=7041 d-2.9=i-2 f3.9=i3 dinf=7041 "
       "f-inf=7041 dnan=7041 dec-2700000=i-2"},
      {"u",
       "i-1=7041 d-0=u0 d-0.5=7041 f-1e-40=7041 d18446744073709549568=u18446744073709549568 "
       "d18446744073709551616=7041 dnan=7041 dec-1=7041 dec900000=u0 dec0=u0 false=u0"},
      {"dec",
       "false=dec0 i4398046511103=dec4398046511103000000 i4398046511104=7041 "
       "i-4398046511103=dec-4398046511103000000 i-4398046511104=7041 u4398046511103=dec4398046511103000000 "
       "u4398046511104=7041 u18446744073709551615=7041"},
      {"d",
       "u18446744073709551615=d18446744073709551616 i9007199254740993=d9007199254740992 "
       "f0.1=d0.10000000149011612 dec-500000=d-0.5"},
      // The third is just above half way; of the fourth the raw value and the quotient are both rounded.
      {"f", "i16777217=f16777216 i16777219=f16777220 u9223372586610589697=f9.223373e+18 dec60329669=f60.329666"},
  };
  const std::map<std::string, conversion> by_target(std::begin(conversions), std::end(conversions));
  for (const auto& [target, sources] : cases) {
    for (const std::string& each : split(sources)) {
      const std::vector<std::string> words = split(each, '=');
      EXPECT_EQ(outcome([&, &to = target] { return by_target.at(to)(val(words[0])); }), words[1]) << each;
    }
  }
}

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

TEST(Arithmetic, integers_agree_with_wider_ones) {
  __extension__ using wide = __int128;
  row numbers = vals("i9223372036854775807 i9223372036854775806 i4294967296 i3037000500 i3037000499 i7 i2 i1 i0");
  for (std::size_t n = numbers.size(); n-- != 0;) numbers.push_back(i(-std::get<std::int64_t>(numbers[n])));
  numbers.push_back(val("i-9223372036854775808"));
  for (const value& left : numbers) {
    for (const value& right : numbers) {
      const wide a = std::get<std::int64_t>(left);
      const wide b = std::get<std::int64_t>(right);
      for (const auto& [sign, exact] : {std::pair('+', a + b), {'-', a - b}, {'*', a * b}, {'/', b == 0 ? 0 : a / b}}) {
        const bool fits = exact >= INT64_MIN && exact <= INT64_MAX && (sign != '/' || b != 0);
        EXPECT_EQ(calculated(operation_of(sign), left, right),
                  fits ? spell(i(static_cast<std::int64_t>(exact))) : "7041")
            << spell(left) << sign << spell(right);
      }
    }
  }
}

using fraction = boost::multiprecision::cpp_rational;
using decimal_operation = Decimal (*)(Decimal, Decimal);

constexpr std::int64_t top = Decimal::max_raw;

std::string calculated(decimal_operation apply, std::int64_t left, std::int64_t right) {
  return outcome([&] { return digits(apply({left}, {right}).raw); });
}

TEST(DecimalArithmetic, rounds_half_away_from_zero_and_stays_in_range) {
  const char* const cases[] = {
      "4398046511103999999 + 1 = 7041", "-4398046511103999999 - 1 = 7041",
      "4398046511103999998 + 1 = 4398046511103999999", "-9223372036854775808 - 1 = 7041",
      // Beyond 64 bits; and operands are not checked.
      "9223372036854775807 + 9223372036854775807 = 7041", "9223372036854775807 + -9223372036854775807 = 0",
      // A half rounds away from zero.
      "1500000 * 1500000 = 2250000", "1 * 500000 = 1", "-1 * 500000 = -1", "1 * 499999 = 0",
      "-9223372036854775808 * -9223372036854775808 = 7041", "3000000000000000000 * 2000000 = 7041",
      "4398046511103999999 * 1000000 = 4398046511103999999", "-9223372036854775808 * 0 = 0",
      // The second is 0.3 above the top: judged before rounding.
      "1100000 * 3998224101003636362 = 4398046511103999998", "1100000 * 3998224101003636363 = 7041",
      "1000000 / 3000000 = 333333", "2000000 / 3000000 = 666667", "-2000000 / 3000000 = -666667", "0 / 5 = 0",
      "5 / 0 = 7041", "0 / 0 = 7041", "4398046511103999999 / 1000000 = 4398046511103999999",
      "4398046511103999999 / 999999 = 7041",
      // Operands of a division are checked.
      "4398046511104000000 / 2000000 = 7041", "1 / -9223372036854775808 = 7041"};
  for (const char* each : cases) {
    const std::vector<std::string> words = split(each);
    const char sign = words[1][0];
    const decimal_operation apply = sign == '+' ? add : sign == '-' ? subtract : sign == '*' ? multiply : divide;
    const auto number = number_in<std::int64_t>;
    EXPECT_EQ(calculated(apply, number(words[0]), number(words[2])), words[4]) << each;
  }
  for (const auto& [of, negated] : {std::pair(-top, top), {INT64_MIN, INT64_MIN}}) EXPECT_EQ(negate({of}).raw, negated);
}

// Rounds an exact number to one that a Decimal can hold, or returns the error. (Boost's 50-digit decimals are no oracle
// here: their quotient of 3 and 6 is a little below a half.)
std::string rounded(const fraction& exact) {
  if (abs(exact) > top) return "7041";
  const boost::multiprecision::cpp_int twice = 2 * abs(numerator(exact)) / denominator(exact);
  const auto size = ((twice + 1) / 2).convert_to<std::int64_t>();
  return std::to_string(exact < 0 ? -size : size);
}

// Makes raw values of all magnitudes, small ones and the edges of the range preferred, some outside.
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
