#include "ov_sql_executor/values/arithmetic.hpp"

#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <limits>
#include <random>

#include "outcome.hpp"

namespace tests {
namespace {

using operation = value_view (*)(const value_view&, const value_view&);

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();

std::string run(operation apply, const value& left, const value& right) {
  return outcome([&] { return apply(view_of(left), view_of(right)); });
}

// What both sides of a pair become.
std::string promoted(const value& left, const value& right) {
  std::string both;
  const std::string first = outcome([&] {
    const promoted_pair pair = promote_pair(view_of(left), view_of(right));
    both = " " + spell(pair.right);
    return pair.left;
  });
  return first + both;
}

// Every pair of alternatives: what the sum of one of each is, or the error.
TEST(Arithmetic, every_pair_of_alternatives) {
  const value samples[] = {true,
                           db_string::tt_string("\x80", 1),
                           u(2),
                           i(3),
                           dec(4'000'000),
                           d(5),
                           f(6),
                           Binary{{1}},
                           OV_OBJ_REF{1, 2},
                           SetSpecifier{u"a"},
                           null(),
                           valueless()};
  const char* const sums[][std::size(samples)] = {
      // clang-format off
      // true   text    uint64        int64         Decimal       double  float  Binary  ref     set     NULL
      {"7020", "7020", "7020",       "i4",         "dec5000000", "d6",   "f7",  "7020", "7020", "7020", "NULL", "bad variant"},
      {"7020", "7020", "7020",       "7020",       "7020",       "7020", "7020", "7020", "7020", "7020", "NULL", "bad variant"},
      {"7020", "7020", "i4",         "i5",         "dec6000000", "d7",   "f8",  "7020", "7020", "7020", "NULL", "bad variant"},
      {"i4",   "7020", "i5",         "i6",         "dec7000000", "d8",   "f9",  "7020", "7020", "7020", "NULL", "bad variant"},
      {"dec5000000", "7020", "dec6000000", "dec7000000", "dec8000000", "d9", "f10", "7020", "7020", "7020", "NULL", "bad variant"},
      {"d6",   "7020", "d7",         "d8",         "d9",         "d10",  "d11", "7020", "7020", "7020", "NULL", "bad variant"},
      {"f7",   "7020", "f8",         "f9",         "f10",        "d11",  "f12", "7020", "7020", "7020", "NULL", "bad variant"},
      {"7020", "7020", "7020",       "7020",       "7020",       "7020", "7020", "7020", "7020", "7020", "NULL", "bad variant"},
      {"7020", "7020", "7020",       "7020",       "7020",       "7020", "7020", "7020", "7020", "7020", "NULL", "bad variant"},
      {"7020", "7020", "7020",       "7020",       "7020",       "7020", "7020", "7020", "7020", "7020", "NULL", "bad variant"},
      {"NULL", "NULL", "NULL",       "NULL",       "NULL",       "NULL", "NULL", "NULL", "NULL", "NULL", "NULL", "bad variant"},
      {"bad variant", "bad variant", "bad variant", "bad variant", "bad variant", "bad variant", "bad variant",
       "bad variant", "bad variant", "bad variant", "bad variant", "bad variant"},
      // clang-format on
  };
  for (std::size_t left = 0; left < std::size(samples); ++left) {
    for (std::size_t right = 0; right < std::size(samples); ++right) {
      const std::string sum = sums[left][right];
      EXPECT_EQ(run(add_values, samples[left], samples[right]), sum) << left << ", " << right;
      // The other operations accept the same pairs.
      for (const operation other : {subtract_values, multiply_values, divide_values}) {
        const std::string result = run(other, samples[left], samples[right]);
        EXPECT_EQ(result.substr(0, 1), sum == "7020" ? "7" : sum.substr(0, 1)) << left << ", " << right;
      }
    }
  }
}

TEST(Arithmetic, promotion_keeps_pairs_of_one_alternative) {
  EXPECT_EQ(promoted(true, false), "true false");
  EXPECT_EQ(promoted(true, u(5)), "u1 u5");
  EXPECT_EQ(promoted(u(5), u(6)), "i5 i6");
  EXPECT_EQ(promoted(SetSpecifier{u"a"}, SetSpecifier{u"b"}), "set 61 set 62");
  EXPECT_EQ(promoted(null(), Binary{{1}}), "NULL NULL");
  EXPECT_EQ(promoted(Binary{{1}}, OV_OBJ_REF{1, 2}), "7020");
}

TEST(Arithmetic, edges) {
  const struct {
    operation apply;
    value left, right;
    const char* result;
  } cases[] = {
      {divide_values, null(), i(0), "NULL"},
      {multiply_values, db_string::tt_string("\x80", 1), i(1), "7020"},
      {add_values, u(9'223'372'036'854'775'808u), i(0), "7041"},
      {add_values, u(9'223'372'036'854'775'808u), d(0), "d9223372036854775808"},
      {add_values, i(4'398'046'511'104), dec(0), "7041"},
      {add_values, u(4'398'046'511'104), f(0), "f4398046511104"},
      {add_values, i(3), dec(500'000), "dec3500000"},
      {multiply_values, true, d(2.5), "d2.5"},
      {divide_values, i(5), i(0), "7041"},
      {divide_values, i(0), i(0), "7041"},
      {divide_values, i(-7), i(2), "i-3"},
      {divide_values, dec(1), u(0), "7041"},
      {divide_values, d(5), i(0), "dinf"},
      {subtract_values, d(infinity), d(infinity), "-nan"},
      {add_values, d(std::numeric_limits<double>::max()), d(std::numeric_limits<double>::max()), "dinf"},
      // In single precision, not through double.
      {add_values, f(16'777'216.0f), f(1.0f), "f16777216"},
      {divide_values, f(1.0f), i(3), "f0.33333334"},
      {add_values, dec(1'500'000), f(1.0f), "f2.5"},
  };
  for (const auto& [apply, left, right, result] : cases) {
    std::string found = run(apply, left, right);
    if (found == "dnan" || found == "d-nan") found = "-nan";  // which NaN is the processor's business
    EXPECT_EQ(found, result) << spell(left) << ", " << spell(right);
  }
}

TEST(Arithmetic, negation) {
  const struct {
    value number;
    const char* result;
  } cases[] = {
      {i(5), "i-5"},
      {i(lowest), "7041"},
      {u(5), "i-5"},
      {u(0), "i0"},
      {u(9'223'372'036'854'775'807u), "i-9223372036854775807"},
      {u(9'223'372'036'854'775'808u), "7041"},
      {dec(-3), "dec3"},
      {d(0.0), "d-0"},
      {f(2.5f), "f-2.5"},
      {d(std::numeric_limits<double>::quiet_NaN()), "d-nan"},
      {null(), "NULL"},
      {true, "7020"},
      {db_string::tt_string("\x80", 1), "7020"},
      {Binary{{1}}, "7020"},
      {OV_OBJ_REF{1, 2}, "7020"},
      {SetSpecifier{u"a"}, "7020"},
      {valueless(), "bad variant"},
  };
  for (const auto& [number, result] : cases) {
    EXPECT_EQ(outcome([&of = number] { return negate_value(view_of(of)); }), result) << number.index();
  }
}

TEST(Arithmetic, integers_agree_with_unbounded_ones) {
  using boost::multiprecision::cpp_int;
  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  const auto any = [&random] {
    const auto bits = static_cast<std::int64_t>(random());
    switch (random() % 4) {
      case 0:
        return bits % 5;
      case 1:
        return (bits % 2 == 0 ? lowest + (bits >> 1 & 3) : highest - (bits >> 1 & 3));
      default:
        return bits >> random() % 64;
    }
  };
  const auto expect = [](operation apply, std::int64_t left, std::int64_t right, const cpp_int& exact) {
    const bool fits = exact >= lowest && exact <= highest;
    EXPECT_EQ(run(apply, i(left), i(right)), fits ? "i" + exact.str() : "7041") << left << ", " << right;
  };
  for (int round = 0; round < 20'000; ++round) {
    const std::int64_t left = any();
    const std::int64_t right = any();
    expect(add_values, left, right, cpp_int(left) + right);
    expect(subtract_values, left, right, cpp_int(left) - right);
    expect(multiply_values, left, right, cpp_int(left) * right);
    if (right != 0) expect(divide_values, left, right, cpp_int(left) / right);
  }
}

}  // namespace
}  // namespace tests
