#include "expressions/operator_test.hpp"
#include "ovdbmetalayer/layout.hpp"
#include "ovdbmetalayer/metalayer.hpp"

namespace tests {
namespace {

using namespace operators;  // NOLINT: all of them
using Operators = OperatorTest;

TEST_F(Operators, connectives) {
  check<logical_and>({"false fails = false [0]", "true false = false [01]", "true NULL = NULL [01]",
                      "true u7 = u7 [01]",  // passed through as it is
                      "true 'ab' = 'ab' [01]", "NULL false = false [01]", "NULL true = NULL [01]",
                      "NULL NULL = NULL [01]", "NULL u7 = 7020 [01]", "u0 fails = 7020 [0]", "true fails = 99 [01]"});
  check<logical_or>({"true fails = true [0]", "false true = true [01]", "false dec3 = dec3 [01]",
                     "NULL true = true [01]", "NULL false = NULL [01]", "NULL NULL = NULL [01]", "NULL 'a' = 7020 [01]",
                     "'a' fails = 7020 [0]"});
  // As if one were inside the other, bracketed either way.
  check<all_of>({"true true false fails = false [012]", "true NULL true = NULL [012]",
                 "true NULL false fails = false [012]", "NULL true u7 = 7020 [012]", "true true u7 = u7 [012]",
                 "true u7 fails = 7020 [01]", "NULL fails false = 99 [01]"});
  check<any_of>({"false NULL true fails = true [012]", "false false 'ab' = 'ab' [012]", "NULL false false = NULL [012]",
                 "false 'ab' fails = 7020 [01]"});
  check<logical_not>({"true = false [0]", "false = true [0]", "NULL = NULL [0]", "i1 = 7020 [0]"});
  check<xor_op>({"true false = true [01]", "true true = false [01]", "true NULL = NULL [01]", "false i1 = 7020 [01]",
                 "NULL fails = NULL [0]", "i1 fails = 7020 [0]"});
}

TEST_F(Operators, tests_of_null_and_type) {
  for (const value& any : vals("false '' u0 d0 x'' ref0 set''")) {
    EXPECT_EQ(run<is_null>({any}) + run<is_not_null>({any}), "false [0]true [0]") << spell(any);
  }
  check<is_null>({"NULL = true [0]"});
  check<is_not_null>({"NULL = false [0]"});
  check<operators::is>({"city set'/place/city/' = true [10]", "city set'/place/' = true [10]", "city set'' = true [10]",
                        "city set'/place/town/' = false [10]", "city set'/place/city/port/' = false [10]",
                        "NULL set'/' = NULL [10]", "fails NULL = NULL [1]", "fails '/place/' = 7020 [1]",
                        "u1 set'/' = 7020 [10]", "ref99 set'/' = 4104 [10]"});  // the core's own status
}

TEST_F(Operators, conditional_evaluates_one_branch) {
  check<if_op<std::int64_t>>({"true u1 fails = i1 [01]", "false fails u2 = i2 [02]", "NULL fails u2 = i2 [02]",
                              "true NULL fails = NULL [01]"});
  check<if_op<bool>>({"u1 fails fails = 7020 [0]", "true u7 fails = true [01]"});
  check<if_op<db_string::tt_string>>({"true 'ab' fails = 'ab' [01]", "true i1 fails = 7020 [01]"});
  check<if_op<Binary>>({"true x'01' fails = x'01' [01]"});
  check<if_op<OV_OBJ_REF>>({"true ref7 fails = ref7 [01]", "true u7 fails = 7020 [01]"});
  check<if_op<SetSpecifier>>({"true set'a' fails = 7020 [01]"});
  check<if_op<NullValue>>({"false fails u2 = NULL [02]", "true fails u2 = 99 [01]"});
}

TEST_F(Operators, casts) {
  check<cast<0>>({"d2.9 = u2 [0]"});
  check<cast<1>>({"d-2.9 = i-2 [0]"});
  check<cast<2>>({"true = dec1000000 [0]"});
  check<cast<3>>({"i16777217 = f16777216 [0]"});
  check<cast<4>>({"f0.5 = d0.5 [0]"});
  check<cast<5>>({"'ab' = 'ab' [0]", "i5 = 7020 [0]"});
  check<cast<9>>({"dec1 = true [0]", "'true' = 1027 [0]", "NULL = NULL [0]"});
}

TEST_F(Operators, a_type_name_becomes_its_specifier) {
  namespace layout = metalayer::layout;
  using enum ovcoredb::column_type;
  core.create_table({u"/meta/", {none, ovcoredb::column_type::text, uint64}, 0, layout::table_tag::set_specifier});
  core.create_index({layout::table_tag::set_specifier, {{4}}, false, layout::index_handle::set_specifier_type});
  const auto add = [&](const metalayer::DottedName& name, const ovcoredb::cell& specifier) {
    const ovcoredb::cell cells[] = {{}, specifier, metalayer::DottedName2RawView(name).words[0]};
    core.insert(layout::table_tag::set_specifier, cells);
  };
  add({u"shop", u"order"}, u"ab");
  add({u"a", u"", u"b"}, u"c");
  add({u""}, u"d");
  add({u"cut"}, std::u16string_view(u"e\0f", 3));
  add({u"empty"}, {});
  metalayer::TlsMetalayerContext::Current() = core_context.handle();
  check<cast<8>>({"'Shop.ORDER' = set'ab' [0]", "'shop.order.' = set'ab' [0]", "'a..b' = set'c' [0]",
                  "'.' = set'd' [0]", "'cut' = set'e' [0]",  // up to the first zero unit
                  "'empty' = NULL [0]", "'shop' = NULL [0]", "'' = NULL [0]", "NULL = NULL [0]", "set'a' = 7020 [0]"});
  metalayer::TlsMetalayerContext::Current() = 0;
  check<cast<8>>({"'shop' = 4101 [0]"});  // the core's own status
}

TEST_F(Operators, texts) {
  check<operators::like>({"'ABC' 'aB_' = true [10]", "'abc' 'ab' = false [10]", "fails NULL = NULL [1]",
                          "u1 '%' = 7020 [10]", "NULL 'a\\' = NULL [10]", "fails u1 = 7020 [1]", "NULL u1 = 7020 [1]",
                          // Escapes are checked before anything matches.
                          "'x' '%a\\' = 7042 Escape character must be followed by a special character. [10]"});
  const std::u16string longer(500, u'x');
  EXPECT_EQ(run<operators::like>({text(longer), text(longer + u"%")}), "true [10]");
  // A prefix only with a wildcard; in the last but one after an escaped backslash.
  check<like_starts_with>({"'Abc%' = 'Abc' [0]", "'ab\\_c%' = 'ab_c' [0]", "'%abc' = '' [0]", "'abc' = '' [0]",
                           "'a\\%b' = '' [0]", "'a_b%' = 'a' [0]", "NULL = NULL [0]", "'a\\\\%' = 'a\\' [0]",
                           "x'' = 7020 [0]"});
  // Both are always evaluated, and nothing is brought to its base form.
  check<starts_with>({"'abc' 'ab' = true [10]", "'abc' '' = true [10]", "'ab' 'abc' = false [10]",
                      "'abc' 'AB' = false [10]", "'a' bytes'' = true [10]", "NULL u1 = NULL [10]",
                      "x'' NULL = NULL [10]", "'a' u1 = 7020 [10]", "fails NULL = 99 [10]"});
  check<concat>({"'a' '' 'bc' = 'abc' [012]", "'a' NULL fails = NULL [01]", "u1 fails = 7020 [0]",
                 "'a' u1 NULL = 7020 [01]", "= '' []"});
}

TEST_F(Operators, arithmetic_evaluates_left_first_and_both_always) {
  check<subtraction>({"i5 u3 = i2 [01]"});
  check<division>({"NULL i0 = NULL [01]"});
  check<addition>({"'a' i1 = 7020 [01]"});
  check<multiplication>({"NULL fails = 99 [01]", "fails 'a' = 99 [0]"});
  check<unary_negate>({"u5 = i-5 [0]"});
}

// Bytes that the core lends for one operand are gone when it is asked for the next.
TEST_F(Operators, over_columns) {
  context.row_stack = {city};
  const auto name = [&] { return column(type_code::tt_string, 2); };
  const auto pattern = [&] { return column(type_code::tt_string, 3); };
  EXPECT_EQ(evaluate(operators::like(name(), pattern())), "true");
  EXPECT_EQ(evaluate(operators::like(pattern(), name())), "false");
  EXPECT_EQ(evaluate(starts_with(name(), name())), "true");
  EXPECT_EQ(evaluate(starts_with(name(), pattern())), "false");
  EXPECT_EQ(evaluate(less_than(name(), pattern())), "true");
  EXPECT_EQ(evaluate(like_starts_with(pattern())), "'lis'");
  std::vector<operator_ptr> both;
  both.push_back(name());
  both.push_back(pattern());
  EXPECT_EQ(evaluate(concat(std::move(both))), "'Lisbonlis%'");
  EXPECT_EQ(evaluate(addition(column(type_code::int64, 4), column(type_code::int64, 4))), "i10");
}

}  // namespace
}  // namespace tests
