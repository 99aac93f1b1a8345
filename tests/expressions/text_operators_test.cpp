#include "expressions/operator_test.hpp"
#include "ov_sql_executor/expressions/arithmetic.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/concat.hpp"
#include "ov_sql_executor/expressions/like.hpp"
#include "ov_sql_executor/expressions/starts_with.hpp"

namespace tests {
namespace {

using TextOperators = OperatorTest;

TEST_F(TextOperators, like) {
  check<operators::like>({"'abc' 'a%' = true [10]", "'ABC' 'aB_' = true [10]", "'abc' 'ab' = false [10]",
                          "'' '' = true [10]", "fails NULL = NULL [1]", "u1 '%' = 7020 [10]",
                          "NULL 'a\\' = NULL [10]",  // the pattern is not looked into
                                                     // Escapes are checked before anything matches.
                          "'x' '%a\\' = 7042 Escape character must be followed by a special character. [10]",
                          "fails u1 = 7020 [1]", "NULL u1 = 7020 [1]"});
  const std::u16string longer(500, u'x');
  EXPECT_EQ(run<operators::like>({text(longer), text(longer + u"%")}), "true [10]");
}

TEST_F(TextOperators, prefix_pattern) {
  check<operators::like_starts_with>({"'Abc%' = 'Abc' [0]", "'ab\\_c%' = 'ab_c' [0]", "'%abc' = '' [0]",
                                      "'abc' = '' [0]",  // a prefix only with a wildcard
                                      "'a\\%b' = '' [0]",
                                      "'a\\\\%' = 'a\\' [0]",  // an escaped backslash, then a wildcard
                                      "'a_b%' = 'a' [0]", "NULL = NULL [0]", "x'' = 7020 [0]"});
}

TEST_F(TextOperators, starts_with) {
  check<operators::starts_with>({"'abc' 'ab' = true [10]", "'abc' '' = true [10]", "'ab' 'abc' = false [10]",
                                 "'abc' 'AB' = false [10]",  // not in base form
                                 "'a' bytes'' = true [10]", "NULL u1 = NULL [10]", "x'' NULL = NULL [10]",
                                 "'a' u1 = 7020 [10]", "fails NULL = 99 [10]"});  // both are always evaluated
}

TEST_F(TextOperators, concat) {
  check<operators::concat>({"'a' '' 'bc' = 'abc' [012]", "'a' NULL fails = NULL [01]", "u1 fails = 7020 [0]",
                            "'a' u1 NULL = 7020 [01]", "= '' []"});
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
  const auto number = [this] { return column(type_code::int64, number_column); };
  EXPECT_EQ(evaluate(operators::addition(number(), number())), "i10");
}

TEST_F(TextOperators, arithmetic_evaluates_left_first_and_both_always) {
  check<operators::subtraction>({"i5 u3 = i2 [01]"});
  check<operators::division>({"NULL i0 = NULL [01]"});
  check<operators::addition>({"'a' i1 = 7020 [01]"});
  check<operators::multiplication>({"NULL fails = 99 [01]", "fails 'a' = 99 [0]"});
  check<operators::unary_negate>({"u5 = i-5 [0]"});
}

}  // namespace
}  // namespace tests
