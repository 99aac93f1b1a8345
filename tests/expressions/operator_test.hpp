// What the tests of operators share: operands that record their evaluation, and a core with one object to read from.
#ifndef TESTS_EXPRESSIONS_OPERATOR_TEST_HPP_
#define TESTS_EXPRESSIONS_OPERATOR_TEST_HPP_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "outcome.hpp"
#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/expressions/property_read.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"
#include "ovcoredb/database.hpp"

namespace tests {

namespace operators = ov::sql_executor::operators;
using operator_ptr = std::unique_ptr<operators::operator_base>;

inline value text(const std::u16string& units) { return db_util::ucs2_to_turbotext(units, db_util::upper_limit::no); }
inline value set_specifier(std::u16string units) { return SetSpecifier{std::move(units)}; }

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
  static constexpr std::uint32_t name_column = 2;
  static constexpr std::uint32_t pattern_column = 3;
  static constexpr std::uint32_t number_column = 4;

  OperatorTest() {
    using enum ovcoredb::column_type;
    tag = core.create_table({u"/place/city/", {ovcoredb::column_type::text, ovcoredb::column_type::text, int64}});
    const ovcoredb::cell cells[] = {u"Lisbon", u"lis%", std::int64_t{5}};
    city = core.insert(tag, cells);
    context.context_handle = core_context.handle();
  }

  // The result of an operator over these operands, and in brackets which of them were evaluated, in order. Operands
  // that are read from the context, and a result that is looked at where it lies, must give the same result.
  template <class Operator, class... Values>
  std::string run(const Values&... operands) {
    std::string journal;
    const std::vector<value> list{operands...};
    std::vector<operator_ptr> recorders;
    for (const value& each : list) {
      recorders.push_back(std::make_unique<recorder>(each, static_cast<char>('0' + recorders.size()), journal));
    }
    const std::string result = evaluate(*make<Operator>(std::move(recorders)));
    check_reads<Operator>(list, result);
    return result + " [" + journal + "]";
  }

  std::string evaluate(const operators::operator_base& any) {
    return outcome_of([&] { return any.evaluate(context); });
  }

  // A column of the one object, lent by the core.
  operator_ptr column(type_code type, std::uint32_t number) {
    context.variables = {city};
    auto object = std::make_unique<operators::value_from_context>(operators::context_list::variables, std::int16_t{0});
    return std::make_unique<operators::property_read>(type, number, tag, std::move(object));
  }
  operator_ptr name() { return column(type_code::tt_string, name_column); }
  operator_ptr pattern() { return column(type_code::tt_string, pattern_column); }

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

  template <class Operator>
  void check_reads(const std::vector<value>& list, const std::string& result) {
    std::vector<operator_ptr> reads;
    context.row_stack = list;
    for (std::size_t i = 0; i < list.size(); ++i) {
      if (list[i].valueless_by_exception()) return;
      reads.push_back(std::make_unique<operators::value_from_context>(operators::context_list::row_stack,
                                                                      static_cast<std::int16_t>(i)));
    }
    const operators::operand lent(make<Operator>(std::move(reads)));
    EXPECT_EQ(outcome_of([&] { return lent.evaluate(context); }), result);
    value room;
    EXPECT_EQ(outcome_of([&] { return to_value(lent.lend(context, room)); }), result);
  }

  // As outcome, with texts readable.
  template <class Action>
  static std::string outcome_of(Action action) {
    std::string readable;
    const std::string spelled = outcome([&] {
      value result = action();
      if (const auto* held = std::get_if<db_string::tt_string>(&result)) {
        const std::u16string units = db_util::turbotext_to_ucs2({{held->data(), held->size()}});
        readable = "'" + std::string(units.begin(), units.end()) + "'";
      }
      return result;
    });
    return readable.empty() ? spelled : readable;
  }
};

}  // namespace tests

#endif  // TESTS_EXPRESSIONS_OPERATOR_TEST_HPP_
