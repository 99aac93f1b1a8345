#include "ov_sql_executor/expressions/expression_translation.hpp"

#include <boost/numeric/conversion/cast.hpp>
#include <typeinfo>

#include "expressions/operator_test.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

namespace plan = physical_queryplan;
using plan::expression;

expression parameter(std::uint64_t number) { return plan::literal(plan::parameter<std::int64_t>{number}); }
expression number(std::int64_t any) { return plan::literal(any); }
expression either(expression left, expression right) { return plan::Or{{{}, {left, right}}}; }

const char* const no_scope = "7007 Internal error: column is not in scope";

class ExpressionTranslation : public OperatorTest {
 protected:
  operator_ptr translate(const expression& any) { return translate_expression(any, constants, columns); }

  template <class Operator>
  void expect_class(const expression& any) {
    const operator_ptr made = translate(any);
    const operators::operator_base& found = *made;
    EXPECT_EQ(typeid(found), typeid(Operator));
  }

  template <class Operation>
  Operation over_parameters(std::size_t count) {
    Operation any;
    for (std::size_t n = 0; n < count; ++n) any.operands.push_back(parameter(n));
    return any;
  }

  // Expects an operation with so many operands to become its operator; both stand in the type operator(operation).
  template <class Operator, class Operation>
  void becomes(Operator (*)(Operation), std::size_t operand_count) {
    expect_class<Operator>(over_parameters<Operation>(operand_count));
  }
  template <std::size_t operand_count, class... Pairs>
  void become() {
    (becomes(static_cast<Pairs*>(nullptr), operand_count), ...);
  }

  // Returns the value of an operation whose operands are the parameters, which hold these values.
  template <class Operation, class... Values>
  std::string value_of(const Values&... values) {
    context.variables = {values...};
    return evaluate(*translate(over_parameters<Operation>(sizeof...(Values))));
  }

  std::string error_of(const expression& any) {
    return outcome([&] { translate(any); });
  }

  std::vector<value> constants;
  scope columns;
};

TEST_F(ExpressionTranslation, every_operation_becomes_its_operator) {
  using namespace operators;
  using namespace plan;
  become<2, equal(Equality), not_equal(Inequality), less_than_or_equal(AtMost), less_than(Less), greater_than(Greater),
         greater_than_or_equal(AtLeast), logical_and(And), logical_or(Or), xor_op(ExclusiveOr), addition(Sum),
         subtraction(Difference), division(Quotient), multiplication(Product), like(PatternMatch),
         starts_with(PrefixTest), operators::is(TypeTest)>();
  become<1, logical_not(Not), is_null(NullTest), is_not_null(NotNullTest), unary_negate(Negation), oid(ObjectNumber),
         cast<9>(ToBool), cast<0>(ToUint64), cast<1>(ToInt64), cast<2>(ToDecimal), cast<3>(ToFloat), cast<4>(ToDouble),
         cast<5>(ToText), cast<8>(ToSetSpecifier), like_starts_with(PrefixPattern)>();
  become<0, concat(Concatenation)>();
}

TEST_F(ExpressionTranslation, operands_keep_their_places) {
  EXPECT_EQ((value_of<plan::Difference>(i(5), i(3))), "i2");
  EXPECT_EQ((value_of<plan::PatternMatch>(text(u"abc"), text(u"a%"))), "true");
  EXPECT_EQ((value_of<plan::TypeTest>(city, val("set'/place/'"))), "true");
  EXPECT_EQ((value_of<plan::Conditional>(true, false, true)), "false");
  EXPECT_EQ((value_of<plan::Concatenation>(text(u"a"), text(u"b"), text(u"c"))), "'abc'");
  EXPECT_EQ((value_of<plan::Not>(true, i(5))), "false") << "surplus operands are ignored";
}

TEST_F(ExpressionTranslation, brackets_in_a_chain_make_no_difference) {
  expect_class<operators::any_of>(either(either(number(1), either(number(2), number(3))), number(4)));
  EXPECT_EQ(spell(constants), "i1 i2 i3 i4");
  expect_class<operators::logical_or>(either(number(1), plan::And{{{}, {either(number(2), number(3)), number(4)}}}));
}

TEST_F(ExpressionTranslation, literals_and_parameters) {
  EXPECT_EQ(evaluate(*translate(plan::Sum{{{}, {parameter(0), parameter(1)}}})), bad_subscript);
  const operator_ptr sum = translate(plan::Sum{{{}, {number(4), number(4)}}});
  expect_class<operators::object_cast>(plan::literal(city));
  EXPECT_EQ(spell(constants), "i4 i4") << "every occurrence of a literal has its own place, references have none";
  context.constants = constants;
  EXPECT_EQ(evaluate(*sum), "i8");

  constants.resize(32'768);
  EXPECT_THROW(translate(number(1)), boost::numeric::positive_overflow);
}

TEST_F(ExpressionTranslation, columns_are_read_where_the_scope_has_them) {
  const plan::variable place({city.object_number, 0}, nullptr, {1, 2, 3, 4});
  const plan::property_column<std::int64_t> property{{{7, 0}}, place};
  const plan::computed<double> average{{5, 6, 7, 8}};
  columns = {place, property, average, property};
  context.row_stack = {city, i(11), 0.5, i(12)};
  EXPECT_EQ(evaluate(*translate(place)), spell(value(city)));
  EXPECT_EQ(evaluate(*translate(property)), "i11") << "the first of two, and no metadata are read";
  EXPECT_EQ(evaluate(*translate(average)), "d0.5");
  EXPECT_EQ(error_of(plan::computed<float>{{5, 6, 7, 8}}), no_scope) << "the alternative counts";
  columns.clear();
  EXPECT_EQ(error_of(place), no_scope);
  EXPECT_EQ(error_of(property), no_scope);
}

TEST_F(ExpressionTranslation, misuse) {
  for (const expression& each : {expression(plan::Equality{{{}, {number(1)}}}), expression(plan::Not{}),
                                 expression(plan::Conditional{{{}, {number(1), number(2)}}}),
                                 either(either(number(1), plan::Or{{{}, {number(2)}}}), number(3))}) {
    EXPECT_EQ(error_of(each), bad_subscript) << "of alternative " << each.index();
  }
  EXPECT_EQ(spell(constants), "i1 i1 i2 i1 i2") << "what was met before the missing one";
  expression broken = number(1);
  make_valueless<plan::Equality>(broken);
  EXPECT_EQ(error_of(broken), bad_variant);
}

}  // namespace
}  // namespace tests
