#include <gmock/gmock.h>

#include <cmath>
#include <random>
#include <stdexcept>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/limit_offset.hpp"
#include "ov_sql_executor/execution/order_by.hpp"
#include "ov_sql_executor/execution/uniond.hpp"

namespace tests {
namespace {

TEST(OrderBy, sorts_by_keys_with_a_direction_each_and_null_lowest) {
  const rows input = {{i(1), i(1)}, {null(), i(2)}, {i(0), i(3)}, {i(1), null()}, {i(0), i(4)}};
  struct {
    std::vector<bool> ascending;
    const char* result;
  } const cases[] = {
      {{true, true}, "(NULL 2)(0 3)(0 4)(1 NULL)(1 1)"},
      {{true, false}, "(NULL 2)(0 4)(0 3)(1 1)(1 NULL)"},
      {{false, true}, "(1 NULL)(1 1)(0 3)(0 4)(NULL 2)"},
      {{false, false}, "(1 1)(1 NULL)(0 4)(0 3)(NULL 2)"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(show(run(order_by(given(input), columns({0, 1}), each.ascending))), each.result);
    // On an inner side the keys lie behind the outer row.
    EXPECT_EQ(show(run(order_by(given(input), columns({2, 3}), each.ascending), {i(9), i(9)})), each.result);
  }
  EXPECT_EQ(show(run(order_by(given(rows{}), columns({0}), {true}))), "");
  EXPECT_EQ(show(run(order_by(given(rows{{i(2)}, {i(1)}}), {}, {}))).size(), 6U) << "no keys, any order";
}

TEST(OrderBy, sorts_many_rows_whatever_their_order) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  rows input;
  for (int n = 0; n < 5000; ++n) input.push_back({i(static_cast<int>(random() % 300)), i(n)});
  const rows sorted = run(order_by(given(input), columns({0, 1}), {false, true}));
  std::stable_sort(input.begin(), input.end(), [](const row& left, const row& right) {
    return std::get<std::int64_t>(left[0]) > std::get<std::int64_t>(right[0]);
  });
  EXPECT_EQ(show(sorted), show(input));
}

TEST(OrderBy, refuses_what_cannot_be_ordered_when_it_is_opened) {
  const auto log = std::make_shared<journal>();
  const auto open = [&](rows input) {
    const order_by sorter(given(std::move(input), log), columns({0}), {true});
    execution_context context;
    delete sorter.create_enumerator(context);
  };
  EXPECT_THROW(open({{i(2)}, {null()}, {u(1)}}), std::logic_error);
  EXPECT_EQ(db_error([&] { open({{1.0}, {std::nan("")}}); }), db_util::out_of_range);
  EXPECT_EQ(db_error([&] { open({{1.0F}, {std::nanf("")}}); }), db_util::out_of_range);
  EXPECT_NO_THROW(open({{std::nan("")}})) << "nothing to compare with";
  EXPECT_EQ(log->alive, 0);
}

rows numbers(int count) {
  rows all;
  for (int n = 1; n <= count; ++n) all.push_back({i(n)});
  return all;
}

TEST(LimitOffset, cuts_the_rows) {
  struct {
    value limit;
    value offset;
    const char* result;
  } const cases[] = {
      {u(2), u(3), "(4)(5)"},
      {u(2), u(0), "(1)(2)"},
      {u(0), u(1), ""},
      {u(~0ULL), u(4), "(5)"},
      {u(~0ULL), u(9), ""},
      {u(~0ULL), u(~0ULL), ""},
      {i(1), Decimal{2'700'000}, "(3)"},
      {2.9, true, "(2)(3)"},
  };
  for (const auto& each : cases) {
    const limit_offset node(given(numbers(5)), constant(0), constant(1));
    EXPECT_EQ(show(run(node, {}, {each.limit, each.offset})), each.result);
  }
}

TEST(LimitOffset, refuses_a_bad_count_before_its_child_is_opened) {
  const auto log = std::make_shared<journal>();
  const limit_offset node(given(numbers(5), log), constant(0), constant(1));
  const auto code = [&](value limit, value offset) {
    return db_error([&] { run(node, {}, {std::move(limit), std::move(offset)}); });
  };
  EXPECT_EQ(code(null(), u(1)), 7020U);
  EXPECT_EQ(code(u(1), null()), 7020U);
  EXPECT_EQ(code(i(-1), null()), 7041U) << "the limit is evaluated first";
  EXPECT_EQ(code(db_string::tt_string(), u(1)), 1027U);
  EXPECT_EQ(code(OV_OBJ_REF{}, u(1)), 7020U);
  EXPECT_TRUE(log->events.empty());
}

TEST(LimitOffset, skips_when_it_is_opened_and_asks_for_no_row_beyond_its_limit) {
  const auto log = std::make_shared<journal>();
  execution_context context{{u(1), u(1)}, {}, {}, 0};
  const limit_offset node(given(numbers(3), log), constant(0), constant(1));
  std::unique_ptr<enumerator> rows_left(node.create_enumerator(context));
  EXPECT_EQ(log->alive, 1);
  EXPECT_EQ(show({*rows_left->next(context)}), "(2)");
  EXPECT_FALSE(rows_left->next(context));
  EXPECT_EQ(log->alive, 1) << "the child goes with the enumerator";
  rows_left.reset();
  EXPECT_EQ(log->alive, 0);
}

TEST(Union, yields_all_rows_of_the_left_then_of_the_right) {
  EXPECT_EQ(show(run(uniond(given(numbers(2)), given(numbers(1))))), "(1)(2)(1)");
  EXPECT_EQ(show(run(uniond(given(rows{}), given(numbers(2))))), "(1)(2)");
  EXPECT_EQ(show(run(uniond(given(numbers(2)), given(rows{})))), "(1)(2)");
  const auto log = std::make_shared<journal>();
  run(uniond(given(numbers(1), log, "l"), given(numbers(1), log, "r")));
  EXPECT_THAT(log->events, testing::ElementsAre("+l", "+r", "-l", "-r"));
}

}  // namespace
}  // namespace tests
