#include <gmock/gmock.h>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/full_join.hpp"
#include "ov_sql_executor/execution/left_join.hpp"
#include "ov_sql_executor/execution/nested_loop_inner_join.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"

namespace tests {
namespace {

using testing::ElementsAre;

// One row, (n, 1) to (n, k), for each of the k that the outer row's value at a position of the row stack says.
given_rows::source as_many_as(std::size_t position) {
  return [position](const execution_context& context) {
    rows all;
    const auto* count = std::get_if<std::int64_t>(&context.row_stack.at(position));
    for (std::int64_t n = 1; count != nullptr && n <= *count; ++n) all.push_back({i(n)});
    return all;
  };
}

TEST(NestedLoopJoins, run_the_inner_side_for_each_outer_row_in_scope) {
  const rows outer = {{u(7), i(2)}, {u(8), i(0)}, {u(9), null()}, {u(10), i(1)}};
  struct {
    row enclosing;
    const char* inner;
    const char* left;
  } const cases[] = {
      {{}, "(7u 2 1)(7u 2 2)(10u 1 1)", "(7u 2 1)(7u 2 2)(8u 0 NULL)(9u NULL NULL)(10u 1 1)"},
      {{i(5), i(5)}, "(7u 2 1)(7u 2 2)(10u 1 1)", "(7u 2 1)(7u 2 2)(8u 0 NULL)(9u NULL NULL)(10u 1 1)"},
  };
  for (const auto& each : cases) {
    const std::size_t position = each.enclosing.size() + 1;
    const nested_loop_inner_join inner(given(outer), given(as_many_as(position)));
    const left_join left(given(outer), given(as_many_as(position)), 1);
    EXPECT_EQ(show(run(inner, each.enclosing)), each.inner);
    EXPECT_EQ(show(run(left, each.enclosing)), each.left);
    EXPECT_EQ(show(run(left, each.enclosing)), each.left) << "a second run";
  }
}

TEST(NestedLoopJoins, make_a_new_inner_enumerator_before_the_old_one_goes) {
  const auto log = std::make_shared<journal>();
  const rows outer = {{i(1)}, {i(0)}, {i(1)}};
  run(nested_loop_inner_join(given(outer, log, "o"), given(as_many_as(0), log, "i")));
  EXPECT_THAT(log->events, ElementsAre("+o", "+i", "+i", "-i", "+i", "-i", "-i", "-o"));
  log->events.clear();
  // An unmatched left row is emitted when its right side is gone.
  run(left_join(given(outer, log, "l"), given(as_many_as(0), log, "r"), 1));
  EXPECT_THAT(log->events, ElementsAre("+l", "+r", "+r", "-r", "-r", "+r", "-r", "-l"));
  log->events.clear();
  run(nested_loop_inner_join(given(rows{}, log, "o"), given(as_many_as(0), log, "i")));
  run(left_join(given(rows{}, log, "l"), given(as_many_as(0), log, "r"), 1));
  EXPECT_THAT(log->events, ElementsAre("+o", "-o", "+l", "-l")) << "no inner side without an outer row";
  EXPECT_EQ(log->alive, 0);
}

TEST(NestedLoopJoins, nest_on_the_inner_side) {
  // The innermost side sees both rows around it: positions 0 and 1.
  auto innermost = given([](const execution_context& context) {
    const value sum = std::get<std::int64_t>(context.row_stack.at(0)) + std::get<std::int64_t>(context.row_stack.at(1));
    return rows{{sum}};
  });
  auto inner = std::make_unique<nested_loop_inner_join>(given(as_many_as(0)), std::move(innermost));
  const left_join join(given(rows{{i(2)}, {i(0)}}), std::move(inner), 2);
  EXPECT_EQ(show(run(join)), "(2 1 3)(2 2 4)(0 NULL NULL)");
}

std::unique_ptr<full_join> equi_join(rows left, rows right, const std::shared_ptr<journal>& log) {
  std::optional<std::unique_ptr<operators::operator_base>> condition =
      std::make_unique<operators::equal>(column(0), column(1));
  return std::make_unique<full_join>(given(std::move(left), log, "l"), given(std::move(right), log, "r"), 1, 1,
                                     std::move(condition));
}

TEST(FullJoin, keeps_the_rows_of_both_sides) {
  struct {
    rows left;
    rows right;
    const char* with_condition;
    const char* without;
  } const cases[] = {
      {{{i(1)}, {i(2)}}, {{i(2)}, {i(3)}}, "(1 NULL)(2 2)(NULL 3)", "(1 2)(1 3)(2 2)(2 3)"},
      {{{i(2)}, {i(2)}}, {{i(2)}, {i(2)}}, "(2 2)(2 2)(2 2)(2 2)", "(2 2)(2 2)(2 2)(2 2)"},
      {{{null()}}, {{null()}}, "(NULL NULL)(NULL NULL)", "(NULL NULL)"},
      {{}, {{i(2)}, {i(3)}}, "(NULL 2)(NULL 3)", "(NULL 2)(NULL 3)"},
      {{{i(1)}, {i(2)}}, {}, "(1 NULL)(2 NULL)", "(1 NULL)(2 NULL)"},
      {{}, {}, "", ""},
  };
  for (const auto& each : cases) {
    const auto log = std::make_shared<journal>();
    EXPECT_EQ(show(run(*equi_join(each.left, each.right, log))), each.with_condition);
    const full_join cross(given(each.left, log, "l"), given(each.right, log, "r"), 1, 1, std::nullopt);
    EXPECT_EQ(show(run(cross)), each.without);
    EXPECT_EQ(show(run(cross)), each.without) << "a second run";
    EXPECT_EQ(log->alive, 0);
  }
}

TEST(FullJoin, reads_neither_side_with_the_other_in_scope) {
  const auto depth = [](const execution_context& context) {
    return rows{{u(context.row_stack.size())}, {u(context.row_stack.size())}};
  };
  const full_join cross(given(depth), given(depth), 1, 1, std::nullopt);
  EXPECT_EQ(show(run(cross, {i(5)})), "(1u 1u)(1u 1u)(1u 1u)(1u 1u)");
}

TEST(FullJoin, goes_on_when_the_right_side_is_empty_when_read_again) {
  int opened = 0;
  const full_join cross(given(rows{{i(1)}, {i(2)}, {i(3)}}), given([&opened](const execution_context&) {
                          return ++opened == 2 ? rows{} : rows{{i(opened)}};
                        }),
                        1, 1, std::nullopt);
  EXPECT_EQ(show(run(cross)), "(1 1)(3 3)");
}

TEST(FullJoin, takes_only_truth_values_for_its_condition) {
  std::optional<std::unique_ptr<operators::operator_base>> condition = column(0);
  const full_join join(given(rows{{i(1)}}), given(rows{{i(1)}}), 1, 1, std::move(condition));
  EXPECT_EQ(db_error([&] { run(join); }), db_util::type_error);
}

TEST(FullJoin, opens_left_first_and_frees_a_side_when_it_is_read) {
  const auto log = std::make_shared<journal>();
  run(*equi_join({{i(1)}}, {{i(1)}}, log));
  EXPECT_THAT(log->events, ElementsAre("+l", "+r", "-r", "-l"));
}

}  // namespace
}  // namespace tests
