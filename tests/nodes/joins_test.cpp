#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/full_join.hpp"
#include "ov_sql_executor/execution/left_join.hpp"
#include "ov_sql_executor/execution/nested_loop_inner_join.hpp"
#include "ov_sql_executor/execution/projection.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"

namespace tests {
namespace {

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
  const char* const outer = "(u7 i2)(u8 i0)(u9 NULL)(u10 i1)";
  for (const char* enclosing : {"", "i5 i5"}) {
    const std::size_t position = split(enclosing).size() + 1;
    const nested_loop_inner_join inner(given(outer), given(as_many_as(position)));
    const left_join left(given(outer), given(as_many_as(position)), 1);
    EXPECT_EQ(run(inner, vals(enclosing)), "(u7 i2 i1)(u7 i2 i2)(u10 i1 i1)");
    for (int time = 0; time < 2; ++time) {
      EXPECT_EQ(run(left, vals(enclosing)), "(u7 i2 i1)(u7 i2 i2)(u8 i0 NULL)(u9 NULL NULL)(u10 i1 i1)") << time;
    }
  }
}

TEST(NestedLoopJoins, make_a_new_inner_enumerator_before_the_old_one_goes) {
  const auto log = std::make_shared<journal>();
  run(nested_loop_inner_join(given("(i1)(i0)(i1)", log, "o"), given(as_many_as(0), log, "i")));
  EXPECT_EQ(std::exchange(log->events, ""), "+o+i+i-i+i-i-i-o");
  // An unmatched left row is emitted when its right side is gone.
  run(left_join(given("(i1)(i0)(i1)", log, "l"), given(as_many_as(0), log, "r"), 1));
  EXPECT_EQ(std::exchange(log->events, ""), "+l+r+r-r-r+r-r-l");
  run(nested_loop_inner_join(given("", log, "o"), given(as_many_as(0), log, "i")));
  run(left_join(given("", log, "l"), given(as_many_as(0), log, "r"), 1));
  EXPECT_EQ(log->events, "+o-o+l-l") << "no inner side without an outer row";
}

std::optional<operator_ptr> same_number() { return std::make_unique<operators::equal>(column(0), column(1)); }

TEST(FullJoin, keeps_the_rows_of_both_sides) {
  const struct {
    const char* left;
    const char* right;
    const char* with_condition;
    const char* without;
  } cases[] = {
      {"(i1)(i2)", "(i2)(i3)", "(i1 NULL)(i2 i2)(NULL i3)", "(i1 i2)(i1 i3)(i2 i2)(i2 i3)"},
      {"(NULL)", "(NULL)", "(NULL NULL)(NULL NULL)", "(NULL NULL)"},
      {"", "(i2)(i3)", "(NULL i2)(NULL i3)", "(NULL i2)(NULL i3)"},
      {"(i1)(i2)", "", "(i1 NULL)(i2 NULL)", "(i1 NULL)(i2 NULL)"},
      {"", "", "", ""},
  };
  for (const auto& each : cases) {
    const auto log = std::make_shared<journal>();
    const full_join join(given(each.left, log), given(each.right, log), 1, 1, same_number());
    const full_join cross(given(each.left, log), given(each.right, log), 1, 1, std::nullopt);
    EXPECT_EQ(run(join), each.with_condition);
    for (int time = 0; time < 2; ++time) EXPECT_EQ(run(cross), each.without) << time;
    EXPECT_EQ(log->alive, 0);
  }
}

TEST(FullJoin, reads_each_side_at_its_own_depth) {
  const auto depth = [](const execution_context& context) { return rows(2, row{u(context.row_stack.size())}); };
  EXPECT_EQ(run(full_join(given(depth), given(depth), 1, 1, std::nullopt), {i(5)}), "(u1 u1)(u1 u1)(u1 u1)(u1 u1)");
  auto right = std::make_unique<projection>(given("(i1)(i2)(i3)"), columns({0}));
  EXPECT_EQ(run(full_join(given(""), std::move(right), 1, 1, std::nullopt)), "(NULL i1)(NULL i2)(NULL i3)");
}

TEST(FullJoin, goes_on_when_the_right_side_is_empty_when_read_again) {
  int opened = 0;
  auto right = given([&opened](const execution_context&) { return ++opened == 2 ? rows{} : rows{{i(opened)}}; });
  EXPECT_EQ(run(full_join(given("(i1)(i2)(i3)"), std::move(right), 1, 1, std::nullopt)), "(i1 i1)(i3 i3)");
}

TEST(FullJoin, takes_only_truth_values_and_opens_left_first) {
  EXPECT_EQ(run(full_join(given("(i1)"), given("(i1)"), 1, 1, column(0))), "7020");
  const auto log = std::make_shared<journal>();
  run(full_join(given("(i1)", log, "l"), given("(i1)", log, "r"), 1, 1, same_number()));
  EXPECT_EQ(log->events, "+l+r-r-l") << "a side goes when it is read";
}

}  // namespace
}  // namespace tests
