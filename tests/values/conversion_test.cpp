#include "ov_sql_executor/values/conversion.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "outcome.hpp"

namespace tests {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

value text() { return db_string::tt_string("\x80\x61", 2); }
value binary() { return Binary{{1, 2}}; }
value reference() { return OV_OBJ_REF{7, 9}; }
value set_specifier() { return SetSpecifier{u"ab"}; }

using conversion = value (*)(const value&);
constexpr conversion conversions[] = {convert_to<bool>,          convert_to<db_string::tt_string>,
                                      convert_to<std::uint64_t>, convert_to<std::int64_t>,
                                      convert_to<Decimal>,       convert_to<double>,
                                      convert_to<float>,         convert_to<Binary>,
                                      convert_to<OV_OBJ_REF>};

// Every pair of alternatives: what each source becomes in the order of the targets above.
TEST(Conversion, every_pair_of_alternatives) {
  const struct {
    value source;
    const char* results[std::size(conversions)];
  } rows[] = {
      // clang-format off
      {true,            {"true", "7020", "u1",   "i1",   "dec1000000", "d1",   "f1",   "7020", "7020"}},
      {text(),          {"1027", "text 80 61", "1027", "1027", "1027", "1027", "1027", "7020", "7020"}},
      {u(2),            {"true", "7020", "u2",   "i2",   "dec2000000", "d2",   "f2",   "7020", "7020"}},
      {i(2),            {"true", "7020", "u2",   "i2",   "dec2000000", "d2",   "f2",   "7020", "7020"}},
      {dec(2'700'000),  {"true", "7020", "u2",   "i2",   "dec2700000", "d2.7", "f2.7", "7020", "7020"}},
      {d(2.5),          {"true", "7020", "u2",   "i2",   "1027",       "d2.5", "1027", "7020", "7020"}},
      {f(2.5f),         {"true", "7020", "u2",   "i2",   "1027",       "d2.5", "f2.5", "7020", "7020"}},
      {binary(),        {"7020", "7020", "7020", "7020", "7020",       "7020", "7020", "bin 1 2", "7020"}},
      {reference(),     {"7020", "7020", "7020", "7020", "7020",       "7020", "7020", "7020", "ref7"}},
      {set_specifier(), {"7020", "7020", "7020", "7020", "7020",       "7020", "7020", "7020", "7020"}},
      {null(),          {"NULL", "NULL", "NULL", "NULL", "NULL",       "NULL", "NULL", "NULL", "NULL"}},
      {valueless(),     {"bad variant", "bad variant", "bad variant", "bad variant", "bad variant", "bad variant",
                         "bad variant", "bad variant", "bad variant"}},
      // clang-format on
  };
  for (const auto& [source, results] : rows) {
    for (std::size_t target = 0; target < std::size(conversions); ++target) {
      EXPECT_EQ(outcome([&, &from = source] { return conversions[target](from); }), results[target])
          << "source " << source.index() << ", target " << target;
    }
  }
}

TEST(Conversion, edges) {
  const struct {
    value source;
    conversion convert;
    const char* result;
  } cases[] = {
      {d(-0.0), convert_to<bool>, "false"},
      {d(not_a_number), convert_to<bool>, "true"},
      {f(0.0f), convert_to<bool>, "false"},
      {dec(1), convert_to<bool>, "true"},
      {u(0), convert_to<bool>, "false"},

      {u(9'223'372'036'854'775'807u), convert_to<std::int64_t>, "i9223372036854775807"},
      {u(9'223'372'036'854'775'808u), convert_to<std::int64_t>, "7041"},
      {d(9223372036854774784.0), convert_to<std::int64_t>, "i9223372036854774784"},
      {d(9223372036854775808.0), convert_to<std::int64_t>, "7041"},
      {d(-9223372036854775808.0), convert_to<std::int64_t>, "i-9223372036854775808"},
      {d(-9223372036854777856.0), convert_to<std::int64_t>, "7041"},
      {d(-2.9), convert_to<std::int64_t>, "i-2"},
      {f(3.9f), convert_to<std::int64_t>, "i3"},
      {d(infinity), convert_to<std::int64_t>, "7041"},
      {f(-static_cast<float>(infinity)), convert_to<std::int64_t>, "7041"},
      {d(not_a_number), convert_to<std::int64_t>, "7041"},
      {dec(-2'700'000), convert_to<std::int64_t>, "i-2"},

      {i(-1), convert_to<std::uint64_t>, "7041"},
      {d(-0.0), convert_to<std::uint64_t>, "u0"},
      {d(-0.5), convert_to<std::uint64_t>, "7041"},
      {f(-1e-40f), convert_to<std::uint64_t>, "7041"},
      {d(18446744073709549568.0), convert_to<std::uint64_t>, "u18446744073709549568"},
      {d(18446744073709551616.0), convert_to<std::uint64_t>, "7041"},
      {d(not_a_number), convert_to<std::uint64_t>, "7041"},
      {dec(-1), convert_to<std::uint64_t>, "7041"},
      {dec(900'000), convert_to<std::uint64_t>, "u0"},

      {i(4'398'046'511'103), convert_to<Decimal>, "dec4398046511103000000"},
      {i(4'398'046'511'104), convert_to<Decimal>, "7041"},
      {i(-4'398'046'511'103), convert_to<Decimal>, "dec-4398046511103000000"},
      {i(-4'398'046'511'104), convert_to<Decimal>, "7041"},
      {u(4'398'046'511'104), convert_to<Decimal>, "7041"},
      {u(18'446'744'073'709'551'615u), convert_to<Decimal>, "7041"},

      {u(18'446'744'073'709'551'615u), convert_to<double>, "d18446744073709551616"},
      {i(9'007'199'254'740'993), convert_to<double>, "d9007199254740992"},
      {i(16'777'217), convert_to<float>, "f16777216"},
      {i(16'777'219), convert_to<float>, "f16777220"},
      {u(9'223'372'586'610'589'697u), convert_to<float>, "f9.223373e+18"},  // just above half way
      {f(0.1f), convert_to<double>, "d0.10000000149011612"},
      {dec(-500'000), convert_to<double>, "d-0.5"},
      // The raw value and the quotient are both rounded to float.
      {dec(60'329'669), convert_to<float>, "f60.329666"},
  };
  for (const auto& [source, convert, result] : cases) {
    EXPECT_EQ(outcome([&convert = convert, &from = source] { return convert(from); }), result) << spell(source);
  }
}

}  // namespace
}  // namespace tests
