#include "ov_sql_executor/expressions/in_list.hpp"

#include <random>
#include <typeinfo>

#include "expressions/operator_test.hpp"
#include "ov_sql_executor/expressions/chain_operands.hpp"
#include "ov_sql_executor/expressions/expression_translation.hpp"

namespace tests {
namespace {

namespace plan = physical_queryplan;
using operators::in_list;
using plan::expression;

expression literal_of(const value& any) {
  return std::visit([](const auto& held) -> expression { return plan::literal(held); }, any);
}
expression parameter_at(std::uint64_t number) { return plan::literal(plan::parameter<std::int64_t>{number}); }
expression column_at(std::uint32_t number) { return plan::computed<std::int64_t>{{number, 0, 0, 0}}; }

// "?3" is the parameter of that number, "x" and "y" are columns, anything else is a literal.
expression term(const std::string& word) {
  if (word[0] == '?') return parameter_at(std::stoull(word.substr(1)));
  if (word == "x" || word == "y") return column_at(word == "x" ? 0 : 1);
  return literal_of(val(word));
}

// A chain, ORs or ANDs, of tests "left right", in which the operand is tested for being equal or not; another word
// stands for itself.
struct chain {
  bool is_or;
  std::vector<std::string> tests;

  // broken_up: the neutral literal stands between the tests, so that there is no run of them.
  expression build(bool broken_up, bool from_right = false) const {
    std::vector<expression> parts;
    for (const std::string& each : tests) {
      if (broken_up && !parts.empty()) parts.push_back(literal_of(!is_or));
      parts.push_back(part(each));
    }
    expression whole = std::move(parts[from_right ? parts.size() - 1 : 0]);
    for (std::size_t i = 1; i < parts.size(); ++i) {
      whole = from_right ? connect(std::move(parts[parts.size() - 1 - i]), std::move(whole))
                         : connect(std::move(whole), std::move(parts[i]));
    }
    return whole;
  }

  std::string spelled() const {
    std::string words = is_or ? "OR" : "AND";
    for (const std::string& each : tests) words += ", " + each;
    return words;
  }

 private:
  expression connect(expression left, expression right) const {
    if (is_or) return plan::Or{{{}, {std::move(left), std::move(right)}}};
    return plan::And{{{}, {std::move(left), std::move(right)}}};
  }
  expression part(const std::string& test) const {
    const std::vector<std::string> words = split(test);
    if (words.size() == 1) return term(words[0]);
    if (is_or) return plan::Equality{{{}, {term(words[0]), term(words[1])}}};
    return plan::Inequality{{{}, {term(words[0]), term(words[1])}}};
  }
};

// "x i1, x i2" as a chain.
chain chain_of(bool is_or, const std::string& tests) { return {is_or, split(tests, ',')}; }

class InList : public OperatorTest {
 protected:
  InList() { columns = {plan::computed<std::int64_t>{{0, 0, 0, 0}}, plan::computed<std::int64_t>{{1, 0, 0, 0}}}; }

  operator_ptr translate(const expression& any) {
    context.constants.clear();
    return translate_expression(any, context.constants, columns);
  }

  bool becomes_list(const std::string& tests, bool is_or = true) {
    const operator_ptr made = translate(chain_of(is_or, tests).build(false));
    const operators::operator_base& found = *made;
    return typeid(found) == typeid(in_list);
  }

  // How an operator is evaluated and tested; both must agree.
  std::string result(operator_ptr any) {
    const operators::operand made(std::move(any));
    const std::string found = outcome([&] { return made.evaluate(context); });
    EXPECT_EQ(outcome([&] { return to_value(operators::view_of_truth(made.test(context))); }), found);
    return found;
  }

  // What the chain yields as it is, where it must be what it yields test by test. Literals take the same places.
  std::string result_of(const chain& any, bool from_right = false) {
    const std::string expected = result(translate(any.build(true, from_right)));
    std::string found = result(translate(any.build(false, from_right)));
    EXPECT_EQ(found, expected) << any.spelled() << " x " << spelled(context.row_stack) << ", parameters "
                               << spelled(context.variables);
    return found;
  }

  static std::string spelled(const row& values) {
    std::string words;
    for (const value& each : values) words += (each.valueless_by_exception() ? "nothing" : spell(each)) + " ";
    return words;
  }

  scope columns;
};

TEST_F(InList, is_what_five_tests_of_one_operand_become) {
  EXPECT_TRUE(becomes_list("x i1,x i2,x i3,x i4,x i5"));
  EXPECT_TRUE(becomes_list("x i1,x i2,x i3,x i4,x i5", false));
  EXPECT_TRUE(becomes_list("i1 x,x ?0,x NULL,x 'a',d1 x"));
  EXPECT_TRUE(becomes_list("i7 i1,i7 i2,i7 i3,i7 i4,i7 i5"));
  EXPECT_FALSE(becomes_list("x i1,x i2,x i3,x i4"));
  EXPECT_FALSE(becomes_list("x i1,x i2,x i3,x i4,y i5"));
  EXPECT_FALSE(becomes_list("x i1,x i2,x i3,x i4,x y"));
  EXPECT_FALSE(becomes_list("x i1,x i2,x i3,x i4,x i5,y i1")) << "part of a chain";
  EXPECT_FALSE(becomes_list("x ref1,x ref2,x ref3,x ref4,x ref5")) << "the core completes literal references";
  EXPECT_FALSE(becomes_list("?0 x,?0 x,?0 x,?0 x,?0 x")) << "the parameter is evaluated behind the operand";
  // Inequalities in ORs and equalities in ANDs are no lists.
  expression mixed = literal_of(true);
  for (int n = 0; n < 6; ++n) mixed = plan::And{{{}, {mixed, chain_of(true, "x i1").build(false)}}};
  const operator_ptr made = translate(mixed);
  const operators::operator_base& found = *made;
  EXPECT_EQ(typeid(found), typeid(operators::all_of));
}

TEST_F(InList, literals_keep_their_places) {
  const chain list = chain_of(true, "x i1,i2 x,x i3,x ?0,x i4,y i5");
  translate(list.build(false));
  EXPECT_EQ(spell(context.constants), "i1 i2 i3 i4 i5");
  translate(chain_of(true, "i9 i1,i9 i2,i9 i3,i9 i4,i9 i5").build(false));
  EXPECT_EQ(spell(context.constants), "i9 i1 i9 i2 i9 i3 i9 i4 i9 i5");
}

// Cases "operand: result in the list, result out of it".
TEST_F(InList, finds_what_is_equal) {
  const auto check = [&](const std::string& members, const std::string& parameters, const std::string& cases) {
    std::string tests;
    for (const std::string& each : split(members)) tests += "x " + each + ",";
    context.variables = vals(parameters);
    for (const std::string& each : split(cases, ',')) {
      const std::vector<std::string> words = split(each);
      context.row_stack = {val(words[0]), i(0)};
      EXPECT_EQ(result_of(chain_of(true, tests)), words[1]) << each << " in " << members;
      EXPECT_EQ(result_of(chain_of(false, tests)), words[2]) << each << " not in " << members;
    }
  };
  check("i1 u2 dec3000000 d4 f5 true dec500000", "",
        "i1 true false,f2 true false,u3 true false,dec4000000 true false,i5 true false,d0.5 true false,"
        "i6 false true,d1.5 false true,dnan false true,NULL NULL NULL,false false true,'a' 7020 7020,ref1 7020 7020");
  check("i1 i2 i3 i4 dnan NULL", "", "i1 true false,i5 NULL NULL,dnan NULL NULL,NULL NULL NULL,x'' 7020 7020");
  check("'a' 'b' 'c' 'd' ''", "", "'d' true false,bytes'80' true false,'e' false true,i1 7020 7020");
  check("x'' x'01' x'02' x'03' x'04'", "", "x'04' true false,x'0400' false true,'' 7020 7020");
  check("set'' set'a' set'b' set'c' set'd'", "", "set'd' true false,set'e' false true");
  check("NULL NULL NULL NULL NULL", "", "i1 NULL NULL,'a' NULL NULL,NULL NULL NULL");
  // The first that is equal, or of another kind, decides.
  check("i1 i2 'a' i3 i4 i5", "", "i2 true false,i3 7020 7020,'a' 7020 7020,NULL NULL NULL");
  check("NULL 'a' 'b' i1 'c' 'd'", "", "'a' true false,'d' 7020 7020,i1 7020 7020");
  check("?0 ?1 ?2 ?3 ?4", "ref1 ref2 ref3 ref4 NULL", "ref4 true false,ref5 NULL NULL,i1 7020 7020");
  check("i1 i2 ?0 i3 ?1 i4", "u7 d0.5", "i7 true false,dec500000 true false,i4 true false,i5 false true");
  check("i1 i2 ?0 i3 i4", "'a'", "i2 true false,i3 7020 7020,NULL NULL NULL");
  check("i1 i2 i3 i4 ?0", "NULL", "i4 true false,i5 NULL NULL,NULL NULL NULL");
}

TEST_F(InList, a_missing_parameter_is_an_error_where_it_is_met) {
  const std::string after = std::string("x i1,x i2,x i3,x i4,x ?0");
  for (const char* each : {"i4 true", "i5 invalid vector<T> subscript", "NULL invalid vector<T> subscript"}) {
    const std::string words = each;
    context.row_stack = {val(words.substr(0, words.find(' '))), i(0)};
    EXPECT_EQ(result_of(chain_of(true, after)), words.substr(words.find(' ') + 1)) << each;
  }
  context.row_stack = {val("i4"), i(0)};
  EXPECT_EQ(result_of(chain_of(true, "x i1,x i2,x ?0,x i4,x i5")), bad_subscript);
}

// The operand is evaluated once, behind the first member.
TEST_F(InList, evaluates_the_operand_once) {
  using operators::context_list, operators::value_from_context;
  const auto run = [&](const value& tested, const std::vector<std::int16_t>& parameters) {
    std::string journal;
    operators::list_members members;
    for (const std::int16_t each : parameters) {
      members.push_back(std::make_unique<value_from_context>(context_list::variables, each));
    }
    const in_list list(in_list::kind::in, std::make_unique<recorder>(tested, '0', journal), std::move(members), {});
    const std::string found = evaluate(list);
    return found + " [" + journal + "]";
  };
  context.variables = vals("i1 i2 'a' NULL");
  EXPECT_EQ(run(i(2), {0, 1}), "true [0]");
  EXPECT_EQ(run(i(3), {0, 1}), "false [0]");
  EXPECT_EQ(run(i(3), {0, 3, 1}), "NULL [0]");
  EXPECT_EQ(run(i(3), {0, 2, 1}), "7020 [0]");
  EXPECT_EQ(run(null(), {0, 2, 1}), "NULL [0]");
  EXPECT_EQ(run(i(3), {0, 9}), std::string(bad_subscript) + " [0]");
  EXPECT_EQ(run(valueless(), {0, 1}), "99 [0]");
  EXPECT_EQ(run(valueless(), {9, 1}), std::string(bad_subscript) + " []");
}

TEST_F(InList, over_columns) {
  context.row_stack = {city};
  using operators::context_list, operators::value_from_context;
  const auto among = [&](type_code type, std::uint32_t number, const std::string& literals) {
    context.constants = vals(literals);
    operators::list_members members;
    for (std::size_t n = 0; n < context.constants.size(); ++n) {
      members.push_back(std::make_unique<value_from_context>(context_list::constants, static_cast<std::int16_t>(n)));
    }
    return evaluate(
        in_list(in_list::kind::in, OperatorTest::column(type, number), std::move(members), context.constants));
  };
  EXPECT_EQ(among(type_code::tt_string, 2, "'a' 'Lisbon' 'b'"), "true");
  EXPECT_EQ(among(type_code::tt_string, 2, "'a' 'lisbon' 'b'"), "false");
  EXPECT_EQ(among(type_code::int64, 4, "u1 dec5000000"), "true");
  EXPECT_EQ(among(type_code::int64, 4, "u1 'a'"), "7020");
}

class random_chains {
 public:
  explicit random_chains(std::mt19937& random) : random_(random) {}

  chain make() {
    family_ = random_() % std::size(families);
    chain made{random_() % 2 == 0, {}};
    for (std::size_t left = 3 + random_() % 12; left != 0; --left) made.tests.push_back(test());
    return made;
  }

  // Parameters mostly of the chain's family; some are missing or hold no value.
  row parameters() {
    row made;
    for (std::size_t left = 3 + random_() % 2; left != 0; --left) {
      made.push_back(random_() % 20 == 0 ? valueless() : val(word()));
    }
    return made;
  }

  static constexpr const char* families[] = {
      "false true i0 i1 i2 u1 u2 dec1000000 dec500000 dec1500000 d0.5 d1 d1.5 d-0 f1 f0.5 dnan dinf NULL",
      "i1 i2 i3",
      "'' bytes'80' 'a' 'b' NULL",
      "x'' x'01' NULL",
      "set'' set'a' NULL",
      "i1 dec1500000 u18446744073709551615 i-1 d1.8446744073709552e19 i9223372036854775807 d9.223372036854776e18"};
  static constexpr const char* any_value = "i1 d1.5 'a' x'01' set'a' ref1 NULL true";

 private:
  std::string word() {
    const std::vector<std::string> words = split(random_() % 25 == 0 ? any_value : families[family_]);
    return words[random_() % words.size()];
  }

  std::string test() {
    const std::string operand = random_() % 15 == 0 ? "y" : "x";
    if (random_() % 8 == 0) return operand + " ?" + std::to_string(random_() % 4);
    if (random_() % 40 == 0) return random_() % 2 == 0 ? "NULL" : "?3";
    const std::string literal = word();
    return random_() % 6 == 0 ? literal + " " + operand : operand + " " + literal;
  }

  std::mt19937& random_;
  std::size_t family_ = 0;
};

TEST_F(InList, random_chains_yield_what_their_tests_yield) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  row tested = vals(random_chains::any_value);
  for (const char* family : random_chains::families) {
    for (const value& each : vals(family)) tested.push_back(each);
  }
  tested.push_back(valueless());
  for (int count = 0; count < 1000 && !HasFailure(); ++count) {
    random_chains chains(random);
    const chain any = chains.make();
    context.variables = chains.parameters();
    const bool from_right = random() % 2 == 0;
    const operator_ptr broken_up = translate(any.build(true, from_right));
    std::vector<value> literals = context.constants;
    const operator_ptr whole = translate(any.build(false, from_right));
    for (const value& each : tested) {
      context.row_stack = {each, tested[random() % tested.size()]};
      const std::string found = evaluate(*whole);
      std::swap(context.constants, literals);
      const std::string expected = evaluate(*broken_up);
      std::swap(context.constants, literals);
      ASSERT_EQ(found, expected) << any.spelled() << "; x and y " << spelled(context.row_stack) << "; parameters "
                                 << spelled(context.variables);
    }
  }
}

}  // namespace
}  // namespace tests
