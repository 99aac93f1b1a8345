#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "outcome.hpp"
#include "ov_sql_executor/errors/stack_weights.hpp"
#include "ov_sql_executor/planning/plan.hpp"
#include "ovcoredb/database.hpp"
#include "own_stack.hpp"
#include "planning/nested_plans.hpp"

namespace tests {
namespace {

using ov::sql_executor::runnable;
namespace weights = error_handling::stack_weights;

const char* const too_deep = "7022 Not implemented error";
constexpr std::size_t small = 256 << 10;
constexpr std::size_t ample = 8 << 20;

runnable planned(plan any) { return std::get<0>(physical_to_exec::Plan(std::move(any))); }

rows run(const runnable& statement) {
  static const ovcoredb::database core;
  static const ovcoredb::context texts(core);
  execution_context context{statement.constants, {i(1), true, false, text(u"")}, {}, texts.handle()};
  const std::unique_ptr<enumerator> open(statement.root->create_enumerator(context));
  rows all;
  while (std::optional<row> next = open->next(context)) all.push_back(std::move(*next));
  return all;
}

std::string rows_of(plan any) {
  return outcome([&] { return run(planned(std::move(any))); });
}

std::string rows_on_small_stack(plan any) {
  std::string rows;
  run_on_stack(small, [&] { rows = rows_of(std::move(any)); });
  return rows;
}

// Every operation and node as deep as is asked for, and what a level of it may use of the stack.
struct nested {
  const char* name;
  std::size_t weight;
  std::function<plan(int)> to;
};
std::vector<nested> all_nested() {
  std::vector<nested> all;
  for (const auto& [name, outer] : operations) {
    const std::size_t levels = name == std::string("OR, AND") ? 2 : 1;
    all.push_back({name, weights::operation * levels, [&o = outer](int depth) { return select(nest(o, depth)); }});
  }
  for (const auto& [name, outer] : nodes) {
    all.push_back({name, weights::node, [&o = outer](int depth) { return select(nest(o, depth)); }});
  }
  return all;
}

// Builds with sanitizers or without optimisation take their time; the first of each kind is as deep with them.
constexpr bool is_slow = weights::guards_frames || !weights::is_optimised;
constexpr int part = is_slow ? 20 : 1;

TEST(DeepPlans, endless_ones_are_refused_and_destroyed) {
  const std::vector<nested> all = all_nested();
  constexpr std::size_t first_node = std::size(operations);
  const auto expect_refused = [&](std::size_t number, int depth) {
    EXPECT_EQ(rows_of(all[number].to(depth)), too_deep) << all[number].name;
    EXPECT_EQ(rows_on_small_stack(all[number].to(depth)), too_deep) << all[number].name;
  };
  expect_refused(0, 1'000'000);
  for (const std::size_t each : {2, 3, 5, 6}) expect_refused(each, 1'000'000 / part);
  expect_refused(first_node, 100'000);
  for (std::size_t each = first_node + 1; each < all.size(); ++each) expect_refused(each, 100'000 / part);
}

TEST(DeepPlans, no_level_uses_more_of_the_stack_than_it_is_said_to) {
  for (const nested& each : all_nested()) {
    const auto used = [&](int depth) {
      plan any = each.to(depth);
      return run_on_stack(ample, [&] { rows_of(std::move(any)); });
    };
    const std::size_t few = used(100);
    EXPECT_LE(used(200), few + 100 * each.weight + 99) << each.name;
  }
}

TEST(DeepPlans, what_is_not_refused_runs_to_the_end_of_the_stack) {
  for (const nested& each : all_nested()) {
    int good = 1;
    for (int step = 256; step > 0; step /= 2) {
      if (rows_on_small_stack(each.to(good + step)) != too_deep) good += step;
    }
    EXPECT_GE(good, 20) << each.name;
  }
}

TEST(DeepPlans, a_plan_made_on_a_large_stack_is_not_run_on_a_small_one) {
  for (const bool is_wide : {false, true}) {
    auto statement = std::make_unique<runnable>(
        planned(is_wide ? select(nest(nodes[0].second, 1000)) : select(nest(left<Sum>(), 1500))));
    EXPECT_EQ(run(*statement).size(), 1U);
    execution_context context{statement->constants, {i(1), true}, {}, 0};
    std::unique_ptr<enumerator> open(statement->root->create_enumerator(context));
    run_on_stack(small, [&] {
      EXPECT_EQ(outcome([&] { return run(*statement); }), too_deep);
      EXPECT_EQ(outcome([&] { open->next(context); }), too_deep);
    });
    EXPECT_TRUE(open->next(context));
    open.reset();
    run_on_stack(small, [&] { statement.reset(); });
  }
}

TEST(DeepPlans, chains_as_they_are_written_work) {
  const std::tuple<nesting, std::uint64_t, const char*> cases[] = {
      {left<Or>(2), 1, "(true)"},        {right<Or>(2), 1, "(true)"},        {right<Or>(2), 2, "(false)"},
      {left<And>(1), 1, "(true)"},       {left<And>(1), 2, "(false)"},       {right<And>(1), 2, "(false)"},
      {left<Sum>(), 0, "(i2001)"},       {right<Sum>(), 0, "(i2001)"},       {right<Difference>(), 0, "(i1)"},
      {when(kind::int64, 2), 0, "(i1)"}, {left<Concatenation>(3), 3, "('')"}};
  for (const auto& [outer, last, result] : cases) {
    const bool is_flat = last == 1 || last == 2;
    const int depth = is_flat ? 20'000 : 2000;
    const auto chain = [&outer = outer, last = last, depth] { return select(nest(outer, depth, parameter_of(last))); };
    EXPECT_EQ(is_flat ? rows_on_small_stack(chain()) : rows_of(chain()), result);
  }
  // Each level looks at its own columns only; all of them in every level would take hours.
  EXPECT_EQ(rows_of(select(nest(add_column, 1500))), "(i1)");
}

TEST(DeepPlans, origins_and_bounds_go_on_for_ever) {
  variable any({7, 0}, nullptr, {1, 2, 3, 4});
  for (int i = 0; i < 1'000'000; ++i) {
    variable outer({7, 0}, nullptr, {1, 2, 3, 4});
    outer.parent = std::make_unique<variable_origin>(variable_origin{std::move(any), {}});
    any = std::move(outer);
  }
  const variable copy = any;
  EXPECT_TRUE(copy == any);
  EXPECT_EQ(structural_order(copy, any), std::strong_ordering::equal);
  (*any.parent)->path.push_back({});
  EXPECT_FALSE(copy == any);
  EXPECT_NE(structural_order(copy, any), std::strong_ordering::equal);

  std::set<bound> bounds;
  for (const std::uint64_t last : {0, 1, 0}) bounds.insert({nest(left<Sum>(), 1'000'000, parameter_of(last)), true});
  EXPECT_EQ(bounds.size(), 2U);
}

TEST(WidePlans, a_hundred_thousand_of_anything) {
  constexpr std::uint32_t count = 100'000;
  EXPECT_EQ(run(planned(ovhost::project({count, column(1)}, generate(1)))).at(0).size(), count);
  Concatenation texts;
  texts.operands.assign(count, parameter_of(3));
  EXPECT_EQ(rows_of(select(std::move(texts))), "('')");
  // Keys by the thousand, all of them looked up again; and a row that has more columns than can be read.
  const auto grouped = [](std::uint32_t items) {
    std::vector<assignment> keys;
    std::vector<expression> read;
    for (std::uint32_t n = 0; n < count; ++n) keys.push_back({one(), column(10 + n)});
    for (std::uint32_t n = 0; n < items; ++n) read.push_back(column(10 + n));
    return ovhost::project(std::move(read), ovhost::group({}, std::move(keys), generate(1)));
  };
  EXPECT_EQ(run(planned(grouped(32768))).at(0).size(), 32768U);
  EXPECT_EQ(rows_of(grouped(count)), "bad numeric conversion: positive overflow");
}

// Each column is defined by the one before, a million steps if every one were followed to its end.
TEST(WidePlans, references_defined_by_references) {
  constexpr std::uint32_t count = 30'000;
  const auto reference = [](std::uint32_t number) { return computed<OV_OBJ_REF>{{number, 0, 0, 0}}; };
  std::vector<assignment> first = {{literal(parameter<OV_OBJ_REF>{0}), reference(0)}};
  std::vector<assignment> second;
  std::vector<expression> items;
  for (std::uint32_t n = 1; n <= count; ++n) {
    first.push_back({one(), reference(n)});
    second.push_back({reference(n - 1), reference(n)});
    items.push_back(reference(count + 1 - n));
  }
  plan any = ovhost::extend(std::move(second), ovhost::extend(std::move(first), generate(1)));
  const auto types = std::get<1>(physical_to_exec::Plan(ovhost::project(std::move(items), std::move(any))));
  EXPECT_EQ(std::ranges::count_if(types, [](const auto& type) { return type.index() == 9; }), count);
}

}  // namespace
}  // namespace tests
