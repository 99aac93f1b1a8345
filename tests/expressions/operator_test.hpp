// Every operator, and what the tests of them share: operands that record their evaluation, and a core with one object
// to read from.
#ifndef TESTS_EXPRESSIONS_OPERATOR_TEST_HPP_
#define TESTS_EXPRESSIONS_OPERATOR_TEST_HPP_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "outcome.hpp"
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
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/expressions/property_read.hpp"
#include "ov_sql_executor/expressions/starts_with.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"
#include "ovcoredb/database.hpp"
#include "valueless.hpp"

namespace tests {

namespace operators = ov::sql_executor::operators;
using operator_ptr = std::unique_ptr<operators::operator_base>;

// An operator of somebody else: writes its digit into a journal, then yields a value, or throws db_exception 99 for the
// valueless one.
class recorder final : public operators::operator_base {
 public:
  recorder(value any, char digit, std::string& journal) : value_(std::move(any)), digit_(digit), journal_(journal) {}

  value evaluate(execution_context&) const override {
    journal_ += digit_;
    if (value_.valueless_by_exception()) throw db_util::db_exception{99};
    return value_;
  }

 private:
  value value_;
  char digit_;
  std::string& journal_;
};

class OperatorTest : public testing::Test {
 protected:
  OperatorTest() {
    using enum ovcoredb::column_type;
    tag = core.create_table({u"/place/city/", {ovcoredb::column_type::text, ovcoredb::column_type::text, int64}});
    const ovcoredb::cell cells[] = {u"Lisbon", u"lis%", std::int64_t{5}};
    city = core.insert(tag, cells);
    context.context_handle = core_context.handle();
  }

  // Cases "operands = result [digits]" of an operator; the digits say which operands are evaluated, in order. An
  // operand is spelled as a value, as "fails" when its evaluation throws 99, or as "city". Operands that are read from
  // the context, and a result that is looked at where it lies, must give the same result.
  template <class Operator>
  void check(std::initializer_list<std::string> cases) {
    for (const std::string& each : cases) {
      const std::string words = each.substr(0, each.find("= "));
      std::vector<value> operands;
      for (const std::string& word : split(words)) {
        operands.push_back(word == "fails" ? valueless() : word == "city" ? value(city) : val(word));
      }
      EXPECT_EQ(words + "= " + run<Operator>(operands), each);
    }
  }

  template <class Operator>
  std::string run(const std::vector<value>& operands) {
    std::string journal;
    std::vector<operator_ptr> recorders;
    std::vector<operator_ptr> reads;
    bool may_read = true;
    context.row_stack = operands;
    for (const value& each : operands) {
      const auto position = static_cast<std::int16_t>(recorders.size());
      recorders.push_back(std::make_unique<recorder>(each, static_cast<char>('0' + position), journal));
      reads.push_back(std::make_unique<operators::value_from_context>(operators::context_list::row_stack, position));
      may_read = may_read && !each.valueless_by_exception();
    }
    const std::string result = evaluate(*make<Operator>(std::move(recorders)));
    if (may_read) {
      const operators::operand lent(make<Operator>(std::move(reads)));
      value room;
      EXPECT_EQ(outcome([&] { return lent.evaluate(context); }), result);
      EXPECT_EQ(outcome([&] { return to_value(lent.lend(context, room)); }), result);
    }
    return result + " [" + journal + "]";
  }

  std::string evaluate(const operators::operator_base& any) {
    return outcome([&] { return any.evaluate(context); });
  }

  // A column of the object at the bottom of the row stack, lent by the core.
  operator_ptr column(type_code type, std::uint32_t number) {
    return std::make_unique<operators::property_read>(type, number, tag, std::int16_t{0});
  }

  ovcoredb::database core;
  ovcoredb::context core_context{core};
  std::uint16_t tag = 0;
  OV_OBJ_REF city{};
  execution_context context;

 private:
  template <class Operator>
  static operator_ptr make(std::vector<operator_ptr> list) {
    if constexpr (std::constructible_from<Operator, std::vector<operator_ptr>>) {
      return std::make_unique<Operator>(std::move(list));
    } else if constexpr (std::constructible_from<Operator, operator_ptr>) {
      return std::make_unique<Operator>(std::move(list.at(0)));
    } else if constexpr (std::constructible_from<Operator, operator_ptr, operator_ptr>) {
      return std::make_unique<Operator>(std::move(list.at(0)), std::move(list.at(1)));
    } else {
      return std::make_unique<Operator>(std::move(list.at(0)), std::move(list.at(1)), std::move(list.at(2)));
    }
  }
};

}  // namespace tests

#endif  // TESTS_EXPRESSIONS_OPERATOR_TEST_HPP_
