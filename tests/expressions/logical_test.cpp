#include "ov_sql_executor/expressions/logical.hpp"

#include "expressions/operator_test.hpp"
#include "ov_sql_executor/expressions/cast.hpp"
#include "ov_sql_executor/expressions/if_op.hpp"
#include "ov_sql_executor/expressions/is.hpp"
#include "ov_sql_executor/expressions/null_test.hpp"

namespace tests {
namespace {

using Logical = OperatorTest;
const value fails = valueless();

TEST_F(Logical, and_and_or) {
  using operators::logical_and;
  using operators::logical_or;
  EXPECT_EQ((run<logical_and>(false, fails)), "false [0]");
  EXPECT_EQ((run<logical_and>(true, false)), "false [01]");
  EXPECT_EQ((run<logical_and>(true, null())), "NULL [01]");
  EXPECT_EQ((run<logical_and>(true, u(7))), "u7 [01]") << "passed through as it is";
  EXPECT_EQ((run<logical_and>(true, text(u"ab"))), "'ab' [01]");
  EXPECT_EQ((run<logical_and>(null(), false)), "false [01]");
  EXPECT_EQ((run<logical_and>(null(), true)), "NULL [01]");
  EXPECT_EQ((run<logical_and>(null(), null())), "NULL [01]");
  EXPECT_EQ((run<logical_and>(null(), u(7))), "7020 [01]");
  EXPECT_EQ((run<logical_and>(u(0), fails)), "7020 [0]");
  EXPECT_EQ((run<logical_and>(true, fails)), "99 [01]");

  EXPECT_EQ((run<logical_or>(true, fails)), "true [0]");
  EXPECT_EQ((run<logical_or>(false, true)), "true [01]");
  EXPECT_EQ((run<logical_or>(false, dec(3))), "dec3 [01]");
  EXPECT_EQ((run<logical_or>(null(), true)), "true [01]");
  EXPECT_EQ((run<logical_or>(null(), false)), "NULL [01]");
  EXPECT_EQ((run<logical_or>(null(), null())), "NULL [01]");
  EXPECT_EQ((run<logical_or>(null(), text(u"a"))), "7020 [01]");
  EXPECT_EQ((run<logical_or>(text(u"a"), fails)), "7020 [0]");
}

TEST_F(Logical, not_and_xor) {
  using operators::logical_not;
  using operators::xor_op;
  EXPECT_EQ(run<logical_not>(true), "false [0]");
  EXPECT_EQ(run<logical_not>(false), "true [0]");
  EXPECT_EQ(run<logical_not>(null()), "NULL [0]");
  EXPECT_EQ(run<logical_not>(i(1)), "7020 [0]");

  EXPECT_EQ((run<xor_op>(true, false)), "true [01]");
  EXPECT_EQ((run<xor_op>(true, true)), "false [01]");
  EXPECT_EQ((run<xor_op>(true, null())), "NULL [01]");
  EXPECT_EQ((run<xor_op>(false, i(1))), "7020 [01]");
  EXPECT_EQ((run<xor_op>(null(), fails)), "NULL [0]");
  EXPECT_EQ((run<xor_op>(i(1), fails)), "7020 [0]");
}

TEST_F(Logical, null_tests_accept_everything) {
  for (const value& any :
       {value(true), text(u""), u(0), i(0), dec(0), d(0), f(0), value(Binary{}), value(city), set_specifier(u"")}) {
    EXPECT_EQ(run<operators::is_null>(any), "false [0]") << any.index();
    EXPECT_EQ(run<operators::is_not_null>(any), "true [0]") << any.index();
  }
  EXPECT_EQ(run<operators::is_null>(null()), "true [0]");
  EXPECT_EQ(run<operators::is_not_null>(null()), "false [0]");
}

TEST_F(Logical, type_test) {
  using operators::is;
  EXPECT_EQ((run<is>(city, set_specifier(u"/place/city/"))), "true [10]");
  EXPECT_EQ((run<is>(city, set_specifier(u"/place/"))), "true [10]") << "a base";
  EXPECT_EQ((run<is>(city, set_specifier(u""))), "true [10]");
  EXPECT_EQ((run<is>(city, set_specifier(u"/place/town/"))), "false [10]");
  EXPECT_EQ((run<is>(city, set_specifier(u"/place/city/port/"))), "false [10]");
  EXPECT_EQ((run<is>(null(), set_specifier(u"/"))), "NULL [10]");
  EXPECT_EQ((run<is>(fails, null())), "NULL [1]");
  EXPECT_EQ((run<is>(fails, text(u"/place/"))), "7020 [1]");
  EXPECT_EQ((run<is>(u(1), set_specifier(u"/"))), "7020 [10]");
  EXPECT_EQ((run<is>(OV_OBJ_REF{99, tag}, set_specifier(u"/"))), "4104 [10]") << "the core's own status";
}

TEST_F(Logical, conditional_evaluates_one_branch) {
  using operators::if_op;
  EXPECT_EQ((run<if_op<std::int64_t>>(true, u(1), fails)), "i1 [01]");
  EXPECT_EQ((run<if_op<std::int64_t>>(false, fails, u(2))), "i2 [02]");
  EXPECT_EQ((run<if_op<std::int64_t>>(null(), fails, u(2))), "i2 [02]");
  EXPECT_EQ((run<if_op<std::int64_t>>(true, null(), fails)), "NULL [01]");
  EXPECT_EQ((run<if_op<bool>>(u(1), fails, fails)), "7020 [0]");
  EXPECT_EQ((run<if_op<db_string::tt_string>>(true, text(u"ab"), fails)), "'ab' [01]");
  EXPECT_EQ((run<if_op<db_string::tt_string>>(true, i(1), fails)), "7020 [01]");
  EXPECT_EQ((run<if_op<std::uint64_t>>(true, i(-1), fails)), "7041 [01]");
  EXPECT_EQ((run<if_op<Decimal>>(true, d(1), fails)), "1027 [01]");
  EXPECT_EQ((run<if_op<double>>(true, f(1.5f), fails)), "d1.5 [01]");
  EXPECT_EQ((run<if_op<float>>(true, i(1), fails)), "f1 [01]");
  EXPECT_EQ((run<if_op<Binary>>(true, Binary{{1}}, fails)), "bin 1 [01]");
  EXPECT_EQ((run<if_op<OV_OBJ_REF>>(true, OV_OBJ_REF{7, 0}, fails)), "ref7 [01]");
  EXPECT_EQ((run<if_op<OV_OBJ_REF>>(true, u(7), fails)), "7020 [01]");
  EXPECT_EQ((run<if_op<SetSpecifier>>(true, set_specifier(u"a"), fails)), "7020 [01]");
  EXPECT_EQ((run<if_op<NullValue>>(false, fails, u(2))), "NULL [02]");
  EXPECT_EQ((run<if_op<NullValue>>(true, fails, u(2))), "99 [01]");
}

TEST_F(Logical, casts) {
  using operators::cast;
  EXPECT_EQ(run<cast<0>>(d(2.9)), "u2 [0]");
  EXPECT_EQ(run<cast<1>>(d(-2.9)), "i-2 [0]");
  EXPECT_EQ(run<cast<2>>(true), "dec1000000 [0]");
  EXPECT_EQ(run<cast<3>>(i(16'777'217)), "f16777216 [0]");
  EXPECT_EQ(run<cast<4>>(f(0.5f)), "d0.5 [0]");
  EXPECT_EQ(run<cast<5>>(text(u"ab")), "'ab' [0]");
  EXPECT_EQ(run<cast<9>>(dec(1)), "true [0]");
  EXPECT_EQ(run<cast<9>>(text(u"true")), "1027 [0]");
  EXPECT_EQ(run<cast<9>>(null()), "NULL [0]");
  EXPECT_EQ(run<cast<5>>(i(5)), "7020 [0]");
  EXPECT_EQ(run<cast<8>>(set_specifier(u"a")), "7020 [0]");
  EXPECT_EQ(run<cast<8>>(null()), "NULL [0]");
}

}  // namespace
}  // namespace tests
