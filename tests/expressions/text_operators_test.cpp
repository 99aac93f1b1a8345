#include "expressions/operator_test.hpp"
#include "ov_sql_executor/expressions/arithmetic.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/concat.hpp"
#include "ov_sql_executor/expressions/like.hpp"
#include "ov_sql_executor/expressions/starts_with.hpp"

namespace tests {
namespace {

using TextOperators = OperatorTest;
const value fails = valueless();

TEST_F(TextOperators, like) {
  using operators::like;
  EXPECT_EQ((run<like>(text(u"abc"), text(u"a%"))), "true [10]");
  EXPECT_EQ((run<like>(text(u"ABC"), text(u"aB_"))), "true [10]") << "letter case aside";
  EXPECT_EQ((run<like>(text(u"abc"), text(u"ab"))), "false [10]");
  EXPECT_EQ((run<like>(text(u""), text(u""))), "true [10]");
  EXPECT_EQ((run<like>(fails, null())), "NULL [1]");
  EXPECT_EQ((run<like>(null(), text(u"a\\"))), "NULL [10]") << "the pattern is not looked into";
  EXPECT_EQ((run<like>(text(u"x"), text(u"%a\\"))), "7042 [10]") << "escapes are checked before anything matches";
  EXPECT_EQ((run<like>(fails, u(1))), "7020 [1]");
  EXPECT_EQ((run<like>(null(), u(1))), "7020 [1]");
  EXPECT_EQ((run<like>(u(1), text(u"%"))), "7020 [10]");
  const std::u16string longer(500, u'x');
  EXPECT_EQ((run<like>(text(longer), text(longer + u"%"))), "true [10]");
}

TEST_F(TextOperators, prefix_pattern) {
  using operators::like_starts_with;
  EXPECT_EQ(run<like_starts_with>(text(u"Abc%")), "'Abc' [0]");
  EXPECT_EQ(run<like_starts_with>(text(u"ab\\_c%")), "'ab_c' [0]");
  EXPECT_EQ(run<like_starts_with>(text(u"%abc")), "'' [0]");
  EXPECT_EQ(run<like_starts_with>(text(u"abc")), "'' [0]") << "a prefix only with a wildcard";
  EXPECT_EQ(run<like_starts_with>(text(u"a\\%b")), "'' [0]");
  EXPECT_EQ(run<like_starts_with>(text(u"a\\\\%")), "'a\\' [0]") << "an escaped backslash, then a wildcard";
  EXPECT_EQ(run<like_starts_with>(text(u"a_b%")), "'a' [0]");
  EXPECT_EQ(run<like_starts_with>(null()), "NULL [0]");
  EXPECT_EQ(run<like_starts_with>(Binary{}), "7020 [0]");
}

TEST_F(TextOperators, starts_with) {
  using operators::starts_with;
  EXPECT_EQ((run<starts_with>(text(u"abc"), text(u"ab"))), "true [10]");
  EXPECT_EQ((run<starts_with>(text(u"abc"), text(u""))), "true [10]");
  EXPECT_EQ((run<starts_with>(text(u"ab"), text(u"abc"))), "false [10]");
  EXPECT_EQ((run<starts_with>(text(u"abc"), text(u"AB"))), "false [10]") << "not in base form";
  EXPECT_EQ((run<starts_with>(text(u"a"), db_string::tt_string())), "true [10]") << "no bytes at all";
  EXPECT_EQ((run<starts_with>(null(), u(1))), "NULL [10]");
  EXPECT_EQ((run<starts_with>(Binary{}, null())), "NULL [10]");
  EXPECT_EQ((run<starts_with>(text(u"a"), u(1))), "7020 [10]");
  EXPECT_EQ((run<starts_with>(fails, null())), "99 [10]") << "both are always evaluated";
}

TEST_F(TextOperators, concat) {
  using operators::concat;
  EXPECT_EQ((run<concat>(text(u"a"), text(u""), text(u"bc"))), "'abc' [012]");
  EXPECT_EQ((run<concat>(text(u"a"), null(), fails)), "NULL [01]");
  EXPECT_EQ((run<concat>(u(1), fails)), "7020 [0]");
  EXPECT_EQ((run<concat>(text(u"a"), u(1), null())), "7020 [01]");
  EXPECT_EQ(run<concat>(), "'' []");
}

// Bytes that the core lends for one operand are gone when it is asked for the next.
TEST_F(TextOperators, over_columns) {
  EXPECT_EQ(evaluate(operators::like(name(), pattern())), "true");
  EXPECT_EQ(evaluate(operators::like(pattern(), name())), "false");
  EXPECT_EQ(evaluate(operators::starts_with(name(), name())), "true");
  EXPECT_EQ(evaluate(operators::starts_with(name(), pattern())), "false");
  EXPECT_EQ(evaluate(operators::less_than(name(), pattern())), "true");
  EXPECT_EQ(evaluate(operators::like_starts_with(pattern())), "'lis'");
  std::vector<operator_ptr> both;
  both.push_back(name());
  both.push_back(pattern());
  EXPECT_EQ(evaluate(operators::concat(std::move(both))), "'Lisbonlis%'");
  EXPECT_EQ(
      evaluate(operators::addition(column(type_code::int64, number_column), column(type_code::int64, number_column))),
      "i10");
}

TEST_F(TextOperators, arithmetic_evaluates_left_first_and_both_always) {
  EXPECT_EQ((run<operators::subtraction>(i(5), u(3))), "i2 [01]");
  EXPECT_EQ((run<operators::division>(null(), i(0))), "NULL [01]");
  EXPECT_EQ((run<operators::addition>(text(u"a"), i(1))), "7020 [01]");
  EXPECT_EQ((run<operators::multiplication>(null(), fails)), "99 [01]");
  EXPECT_EQ((run<operators::multiplication>(fails, text(u"a"))), "99 [0]");
  EXPECT_EQ(run<operators::unary_negate>(u(5)), "i-5 [0]");
}

}  // namespace
}  // namespace tests
