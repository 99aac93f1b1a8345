#include "ov_sql_executor/expressions/logical.hpp"

#include "expressions/operator_test.hpp"
#include "ov_sql_executor/expressions/cast.hpp"
#include "ov_sql_executor/expressions/if_op.hpp"
#include "ov_sql_executor/expressions/is.hpp"
#include "ov_sql_executor/expressions/null_test.hpp"

namespace tests {
namespace {

using Logical = OperatorTest;

TEST_F(Logical, connectives) {
  check<operators::logical_and>({"false fails = false [0]", "true false = false [01]", "true NULL = NULL [01]",
                                 "true u7 = u7 [01]",  // passed through as it is
                                 "true 'ab' = 'ab' [01]", "NULL false = false [01]", "NULL true = NULL [01]",
                                 "NULL NULL = NULL [01]", "NULL u7 = 7020 [01]", "u0 fails = 7020 [0]",
                                 "true fails = 99 [01]"});
  check<operators::logical_or>({"true fails = true [0]", "false true = true [01]", "false dec3 = dec3 [01]",
                                "NULL true = true [01]", "NULL false = NULL [01]", "NULL NULL = NULL [01]",
                                "NULL 'a' = 7020 [01]", "'a' fails = 7020 [0]"});
  // As if one were inside the other, bracketed either way.
  check<operators::all_of>({"true true false fails = false [012]", "true NULL true = NULL [012]",
                            "true NULL false fails = false [012]", "NULL true u7 = 7020 [012]",
                            "true true u7 = u7 [012]", "true u7 fails = 7020 [01]", "NULL fails false = 99 [01]"});
  check<operators::any_of>({"false NULL true fails = true [012]", "false false 'ab' = 'ab' [012]",
                            "NULL false false = NULL [012]", "false 'ab' fails = 7020 [01]"});
  check<operators::logical_not>({"true = false [0]", "false = true [0]", "NULL = NULL [0]", "i1 = 7020 [0]"});
  check<operators::xor_op>({"true false = true [01]", "true true = false [01]", "true NULL = NULL [01]",
                            "false i1 = 7020 [01]", "NULL fails = NULL [0]", "i1 fails = 7020 [0]"});
}

TEST_F(Logical, null_tests_accept_everything) {
  for (const value& any : vals("true '' u0 i0 dec0 d0 f0 x'' ref1 set''")) {
    EXPECT_EQ(run<operators::is_null>({any}), "false [0]") << any.index();
    EXPECT_EQ(run<operators::is_not_null>({any}), "true [0]") << any.index();
  }
  check<operators::is_null>({"NULL = true [0]"});
  check<operators::is_not_null>({"NULL = false [0]"});
}

TEST_F(Logical, type_test) {
  check<operators::is>({"city set'/place/city/' = true [10]", "city set'/place/' = true [10]", "city set'' = true [10]",
                        "city set'/place/town/' = false [10]", "city set'/place/city/port/' = false [10]",
                        "NULL set'/' = NULL [10]", "fails NULL = NULL [1]", "fails '/place/' = 7020 [1]",
                        "u1 set'/' = 7020 [10]", "ref99 set'/' = 4104 [10]"});  // the core's own status
}

TEST_F(Logical, conditional_evaluates_one_branch) {
  using operators::if_op;
  check<if_op<std::int64_t>>({"true u1 fails = i1 [01]", "false fails u2 = i2 [02]", "NULL fails u2 = i2 [02]",
                              "true NULL fails = NULL [01]"});
  check<if_op<bool>>({"u1 fails fails = 7020 [0]", "true u7 fails = true [01]"});
  check<if_op<db_string::tt_string>>({"true 'ab' fails = 'ab' [01]", "true i1 fails = 7020 [01]"});
  check<if_op<std::uint64_t>>({"true i-1 fails = 7041 [01]"});
  check<if_op<Decimal>>({"true d1 fails = 1027 [01]"});
  check<if_op<double>>({"true f1.5 fails = d1.5 [01]"});
  check<if_op<float>>({"true i1 fails = f1 [01]"});
  check<if_op<Binary>>({"true x'01' fails = x'01' [01]"});
  check<if_op<OV_OBJ_REF>>({"true ref7 fails = ref7 [01]", "true u7 fails = 7020 [01]"});
  check<if_op<SetSpecifier>>({"true set'a' fails = 7020 [01]"});
  check<if_op<NullValue>>({"false fails u2 = NULL [02]", "true fails u2 = 99 [01]"});
}

TEST_F(Logical, casts) {
  using operators::cast;
  check<cast<0>>({"d2.9 = u2 [0]"});
  check<cast<1>>({"d-2.9 = i-2 [0]"});
  check<cast<2>>({"true = dec1000000 [0]"});
  check<cast<3>>({"i16777217 = f16777216 [0]"});
  check<cast<4>>({"f0.5 = d0.5 [0]"});
  check<cast<5>>({"'ab' = 'ab' [0]", "i5 = 7020 [0]"});
  check<cast<8>>({"set'a' = 7020 [0]", "NULL = NULL [0]"});
  check<cast<9>>({"dec1 = true [0]", "'true' = 1027 [0]", "NULL = NULL [0]"});
}

}  // namespace
}  // namespace tests
