#include "ov_sql_executor/expressions/expression_translation.hpp"

#include <boost/numeric/conversion/cast.hpp>
#include <typeinfo>

#include "expressions/operator_test.hpp"
#include "ov_sql_executor/expressions/arithmetic.hpp"
#include "ov_sql_executor/expressions/cast.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/concat.hpp"
#include "ov_sql_executor/expressions/if_op.hpp"
#include "ov_sql_executor/expressions/is.hpp"
#include "ov_sql_executor/expressions/like.hpp"
#include "ov_sql_executor/expressions/logical.hpp"
#include "ov_sql_executor/expressions/null_test.hpp"
#include "ov_sql_executor/expressions/object_cast.hpp"
#include "ov_sql_executor/expressions/oid.hpp"
#include "ov_sql_executor/expressions/starts_with.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

namespace plan = physical_queryplan;
using plan::expression;

expression parameter(std::uint64_t number) { return plan::literal(plan::parameter<std::int64_t>{number}); }
expression number(std::int64_t any) { return plan::literal(any); }

class ExpressionTranslation : public OperatorTest {
 protected:
  operator_ptr translate(const expression& any) { return translate_expression(any, constants, columns); }

  static const std::type_info& class_of(const operators::operator_base& any) { return typeid(any); }

  // The class that an operation becomes.
  template <class Operation>
  const std::type_info& class_of(std::size_t operand_count, plan::result_type_tag result = {}) {
    Operation any;
    any.result_type = result;
    for (std::size_t i = 0; i < operand_count; ++i) any.operands.push_back(parameter(i));
    return class_of(*translate(any));
  }

  // The value of an operation whose operands are the parameters, which hold these values.
  template <class Operation, class... Values>
  std::string value_of(const Values&... values) {
    context.variables = {values...};
    Operation any;
    for (std::size_t i = 0; i < sizeof...(Values); ++i) any.operands.push_back(parameter(i));
    return evaluate(*translate(any));
  }

  std::string error_of(const expression& any) {
    return outcome([&] {
      translate(any);
      return null();
    });
  }

  std::vector<value> constants;
  scope columns;
};

TEST_F(ExpressionTranslation, every_operation_becomes_its_operator) {
  using namespace operators;
  EXPECT_EQ(class_of<plan::Equality>(2), typeid(equal));
  EXPECT_EQ(class_of<plan::Inequality>(2), typeid(not_equal));
  EXPECT_EQ(class_of<plan::AtMost>(2), typeid(less_than_or_equal));
  EXPECT_EQ(class_of<plan::Less>(2), typeid(less_than));
  EXPECT_EQ(class_of<plan::Greater>(2), typeid(greater_than));
  EXPECT_EQ(class_of<plan::AtLeast>(2), typeid(greater_than_or_equal));
  EXPECT_EQ(class_of<plan::And>(2), typeid(logical_and));
  EXPECT_EQ(class_of<plan::Or>(2), typeid(logical_or));
  EXPECT_EQ(class_of<plan::Not>(1), typeid(logical_not));
  EXPECT_EQ(class_of<plan::NullTest>(1), typeid(is_null));
  EXPECT_EQ(class_of<plan::NotNullTest>(1), typeid(is_not_null));
  EXPECT_EQ(class_of<plan::Sum>(2), typeid(addition));
  EXPECT_EQ(class_of<plan::Difference>(2), typeid(subtraction));
  EXPECT_EQ(class_of<plan::Negation>(1), typeid(unary_negate));
  EXPECT_EQ(class_of<plan::Quotient>(2), typeid(division));
  EXPECT_EQ(class_of<plan::Product>(2), typeid(multiplication));
  EXPECT_EQ(class_of<plan::PatternMatch>(2), typeid(like));
  EXPECT_EQ(class_of<plan::PrefixTest>(2), typeid(starts_with));
  EXPECT_EQ(class_of<plan::ExclusiveOr>(2), typeid(xor_op));
  EXPECT_EQ(class_of<plan::Concatenation>(0), typeid(concat));
  EXPECT_EQ(class_of<plan::TypeTest>(2), typeid(is));
  EXPECT_EQ(class_of<plan::ObjectNumber>(1), typeid(oid));
  EXPECT_EQ(class_of<plan::ToBool>(1), typeid(cast<9>));
  EXPECT_EQ(class_of<plan::ToUint64>(1), typeid(cast<0>));
  EXPECT_EQ(class_of<plan::ToInt64>(1), typeid(cast<1>));
  EXPECT_EQ(class_of<plan::ToDecimal>(1), typeid(cast<2>));
  EXPECT_EQ(class_of<plan::ToFloat>(1), typeid(cast<3>));
  EXPECT_EQ(class_of<plan::ToDouble>(1), typeid(cast<4>));
  EXPECT_EQ(class_of<plan::ToText>(1), typeid(cast<5>));
  EXPECT_EQ(class_of<plan::ToSetSpecifier>(1), typeid(cast<8>));
  EXPECT_EQ(class_of<plan::PrefixPattern>(1), typeid(like_starts_with));
}

template <class T>
plan::result_type_tag tagged() {
  return meta_support::TypeIdentity<T>();
}

TEST_F(ExpressionTranslation, the_result_type_selects_the_conditional) {
  using operators::if_op;
  using plan::Conditional;
  EXPECT_EQ(class_of<Conditional>(3, tagged<bool>()), typeid(if_op<bool>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<db_string::tt_string>()), typeid(if_op<db_string::tt_string>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<std::uint64_t>()), typeid(if_op<std::uint64_t>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<std::int64_t>()), typeid(if_op<std::int64_t>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<Decimal>()), typeid(if_op<Decimal>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<double>()), typeid(if_op<double>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<float>()), typeid(if_op<float>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<Binary>()), typeid(if_op<Binary>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<OV_OBJ_REF>()), typeid(if_op<OV_OBJ_REF>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<SetSpecifier>()), typeid(if_op<SetSpecifier>));
  EXPECT_EQ(class_of<Conditional>(3, tagged<NullValue>()), typeid(if_op<NullValue>));
}

TEST_F(ExpressionTranslation, operands_keep_their_places) {
  EXPECT_EQ((value_of<plan::Difference>(i(5), i(3))), "i2");
  EXPECT_EQ((value_of<plan::PatternMatch>(text(u"abc"), text(u"a%"))), "true");
  EXPECT_EQ((value_of<plan::TypeTest>(city, set_specifier(u"/place/"))), "true");
  EXPECT_EQ((value_of<plan::Conditional>(true, false, true)), "false");
  EXPECT_EQ((value_of<plan::Concatenation>(text(u"a"), text(u"b"), text(u"c"))), "'abc'");
  EXPECT_EQ((value_of<plan::Not>(true, i(5))), "false") << "surplus operands are ignored";
}

TEST_F(ExpressionTranslation, literals_and_parameters) {
  EXPECT_EQ(evaluate(*translate(plan::Sum{{{}, {parameter(0), parameter(1)}}})), "invalid vector<T> subscript");
  EXPECT_TRUE(constants.empty());

  const operator_ptr sum = translate(plan::Sum{{{}, {number(4), number(4)}}});
  EXPECT_EQ(constants.size(), 2U) << "every occurrence has its own place";
  context.constants = constants;
  EXPECT_EQ(evaluate(*sum), "i8");

  const operator_ptr reference = translate(plan::literal(city));
  EXPECT_EQ(class_of(*reference), typeid(operators::object_cast));
  EXPECT_EQ(constants.size(), 2U);

  EXPECT_NO_THROW(translate(parameter(32'767)));
  EXPECT_THROW(translate(parameter(32'768)), boost::numeric::positive_overflow);
  constants.resize(32'768);
  EXPECT_THROW(translate(number(1)), boost::numeric::positive_overflow);
}

TEST_F(ExpressionTranslation, columns_are_read_where_the_scope_has_them) {
  const plan::variable place({city.object_number, 0}, nullptr, {1, 2, 3, 4});
  const plan::property_column<std::int64_t> property{{{7, 0}}, place};
  const plan::computed<double> average{{5, 6, 7, 8}};
  columns = {place, property, average, property};
  context.row_stack = {city, i(11), d(0.5), i(12)};
  EXPECT_EQ(evaluate(*translate(place)), spell(value(city)));
  EXPECT_EQ(evaluate(*translate(property)), "i11") << "the first of two, and no metadata are read";
  EXPECT_EQ(evaluate(*translate(average)), "d0.5");

  EXPECT_EQ(error_of(plan::computed<float>{{5, 6, 7, 8}}), "7007") << "the alternative counts";
  columns.clear();
  EXPECT_EQ(error_of(place), "7007");
  EXPECT_EQ(error_of(property), "7007");
}

TEST_F(ExpressionTranslation, misuse) {
  EXPECT_EQ(error_of(plan::Equality{{{}, {number(1)}}}), "invalid vector<T> subscript");
  EXPECT_EQ(constants.size(), 1U) << "what the operand before it appended";
  EXPECT_EQ(error_of(plan::Not{}), "invalid vector<T> subscript");
  EXPECT_EQ(error_of(plan::Conditional{{{}, {number(1), number(2)}}}), "invalid vector<T> subscript");
  expression broken = number(1);
  make_valueless<plan::Equality>(broken);
  EXPECT_EQ(error_of(broken), "bad variant");
}

}  // namespace
}  // namespace tests
