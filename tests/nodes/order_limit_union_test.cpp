#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <stdexcept>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/limit_offset.hpp"
#include "ov_sql_executor/execution/order_by.hpp"
#include "ov_sql_executor/execution/uniond.hpp"

namespace tests {
namespace {

TEST(OrderBy, sorts_by_keys_with_a_direction_each_and_null_lowest) {
  const char* const input = "(i1 i1)(NULL i2)(i0 i3)(i1 NULL)(i0 i4)";
  const std::pair<std::vector<bool>, const char*> cases[] = {
      {{true, true}, "(NULL i2)(i0 i3)(i0 i4)(i1 NULL)(i1 i1)"},
      {{true, false}, "(NULL i2)(i0 i4)(i0 i3)(i1 i1)(i1 NULL)"},
      {{false, true}, "(i1 NULL)(i1 i1)(i0 i3)(i0 i4)(NULL i2)"},
      {{false, false}, "(i1 i1)(i1 NULL)(i0 i4)(i0 i3)(NULL i2)"},
  };
  for (const auto& [ascending, result] : cases) {
    EXPECT_EQ(run(order_by(given(input), columns({0, 1}), ascending)), result);
    // On an inner side the keys lie behind the outer row.
    EXPECT_EQ(run(order_by(given(input), columns({2, 3}), ascending), vals("i9 i9")), result);
  }
  EXPECT_EQ(run(order_by(given(""), columns({0}), {true})), "");
  EXPECT_EQ(rows_of(order_by(given("(i2)(i1)"), {}, {})).size(), 2U) << "no keys, any order";
}

TEST(OrderBy, sorts_many_rows_whatever_their_order) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  rows input;
  for (int n = 0; n < 5000; ++n) input.push_back({i(static_cast<int>(random() % 300)), i(n)});
  const std::string sorted = run(order_by(given(input), columns({0, 1}), {false, true}));
  std::stable_sort(input.begin(), input.end(), [](const row& left, const row& right) {
    return std::get<std::int64_t>(left[0]) > std::get<std::int64_t>(right[0]);
  });
  EXPECT_EQ(sorted, spell(input));
}

TEST(OrderBy, refuses_what_cannot_be_ordered_when_it_is_opened) {
  const auto log = std::make_shared<journal>();
  const auto open = [&](const char* input) {
    const order_by sorter(given(table(input), log), columns({0}), {true});
    execution_context context;
    delete sorter.create_enumerator(context);
  };
  EXPECT_THROW(open("(i2)(NULL)(u1)"), std::logic_error);
  EXPECT_EQ(outcome([&] { open("(d1)(dnan)"); }), "7041");
  EXPECT_EQ(outcome([&] { open("(f1)(fnan)"); }), "7041");
  EXPECT_EQ(outcome([&] { open("(dnan)"); }), "ok") << "nothing to compare with";
  EXPECT_EQ(log->alive, 0);
}

TEST(LimitOffset, cuts_the_rows) {
  const limit_offset node(given("(i1)(i2)(i3)(i4)(i5)"), constant(0), constant(1));
  const std::pair<const char*, const char*> cases[] = {{"u2 u3", "(i4)(i5)"},
                                                       {"u2 u0", "(i1)(i2)"},
                                                       {"u0 u1", ""},
                                                       {"u18446744073709551615 u4", "(i5)"},
                                                       {"u18446744073709551615 u18446744073709551615", ""},
                                                       {"i1 dec2700000", "(i3)"},
                                                       {"d2.9 true", "(i2)(i3)"}};
  for (const auto& [limit_and_offset, result] : cases) EXPECT_EQ(run(node, {}, vals(limit_and_offset)), result);
}

TEST(LimitOffset, refuses_a_bad_count_before_its_child_is_opened) {
  const auto log = std::make_shared<journal>();
  const limit_offset node(given(table("(i1)"), log), constant(0), constant(1));
  EXPECT_EQ(run(node, {}, vals("NULL u1")), "7020");
  EXPECT_EQ(run(node, {}, vals("u1 NULL")), "7020");
  EXPECT_EQ(run(node, {}, vals("i-1 NULL")), "7041") << "the limit is evaluated first";
  EXPECT_EQ(run(node, {}, vals("'' u1")), "1027");
  EXPECT_EQ(run(node, {}, vals("ref0 u1")), "7020");
  EXPECT_TRUE(log->events.empty());
}

TEST(LimitOffset, skips_when_it_is_opened_and_asks_for_no_row_beyond_its_limit) {
  const auto log = std::make_shared<journal>();
  execution_context context{vals("u1 u1"), {}, {}, 0};
  const limit_offset node(given(table("(i1)(i2)(i3)"), log), constant(0), constant(1));
  std::unique_ptr<enumerator> rows_left(node.create_enumerator(context));
  EXPECT_EQ(log->alive, 1);
  EXPECT_EQ(spell(*rows_left->next(context)), "i2");
  EXPECT_FALSE(rows_left->next(context));
  EXPECT_EQ(log->alive, 1) << "the child goes with the enumerator";
  rows_left.reset();
  EXPECT_EQ(log->alive, 0);
}

TEST(Union, yields_all_rows_of_the_left_then_of_the_right) {
  EXPECT_EQ(run(uniond(given("(i1)(i2)"), given("(i1)"))), "(i1)(i2)(i1)");
  EXPECT_EQ(run(uniond(given(""), given("(i1)(i2)"))), "(i1)(i2)");
  EXPECT_EQ(run(uniond(given("(i1)(i2)"), given(""))), "(i1)(i2)");
  const auto log = std::make_shared<journal>();
  run(uniond(given(table("(i1)"), log, "l"), given(table("(i1)"), log, "r")));
  EXPECT_THAT(log->events, testing::ElementsAre("+l", "+r", "-l", "-r"));
}

}  // namespace
}  // namespace tests
