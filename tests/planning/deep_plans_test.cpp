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

const char* const too_deep = "7022 Not implemented error";
constexpr std::size_t small = 256 << 10;
constexpr std::size_t ample = 8 << 20;

runnable planned(plan any) { return std::get<0>(physical_to_exec::Plan(std::move(any))); }

std::vector<row> run(const runnable& statement) {
  static const ovcoredb::database core;
  static const ovcoredb::context texts(core);
  execution_context context{statement.constants, {std::int64_t{1}, true, false, text(u"")}, {}, texts.handle()};
  const std::unique_ptr<enumerator> open(statement.root->create_enumerator(context));
  std::vector<row> all;
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

template <class Make>
void expect_refused_everywhere(const char* name, Make make) {
  EXPECT_EQ(rows_of(make()), too_deep) << name;
  EXPECT_EQ(rows_on_small_stack(make()), too_deep) << name;
}

// Builds with sanitizers or without optimisation take their time; the first of each kind is as deep with them.
constexpr bool is_slow = error_handling::stack_weights::guards_frames || !error_handling::stack_weights::is_optimised;
constexpr int part = is_slow ? 20 : 1;

TEST(DeepPlans, endless_ones_are_refused_and_destroyed) {
  for (const std::size_t each : {0, 3, 6, 13, 22}) {
    const auto& [name, outer] = operations()[each];
    expect_refused_everywhere(
        name, [&outer = outer, each] { return select(nest(outer, 1'000'000 / (each == 0 ? 1 : part))); });
  }
  expect_refused_everywhere("node", [] { return select(nest(nodes()[0].second, 100'000)); });
  for (const auto& [name, outer] : nodes()) {
    expect_refused_everywhere(name, [&outer = outer] { return select(nest(outer, 100'000 / part)); });
  }
}

// What a level uses of the stack, planned and run.
std::size_t level_of(const std::function<plan(int)>& make) {
  const auto used = [&](int depth) {
    plan any = make(depth);
    return run_on_stack(ample, [&] { rows_of(std::move(any)); });
  };
  const std::size_t few = used(100);
  const std::size_t many = used(200);
  return many > few ? (many - few) / 100 : 0;
}

TEST(DeepPlans, no_level_uses_more_of_the_stack_than_it_is_said_to) {
  for (const auto& [name, outer] : operations()) {
    const bool is_two_levels = name == std::string("OR and AND");
    EXPECT_LE(level_of([&outer = outer](int depth) { return select(nest(outer, depth)); }),
              error_handling::stack_weights::operation * (is_two_levels ? 2 : 1))
        << name;
  }
  for (const auto& [name, outer] : nodes()) {
    EXPECT_LE(level_of([&outer = outer](int depth) { return select(nest(outer, depth)); }),
              error_handling::stack_weights::node)
        << name;
  }
}

// The greatest depth that a small stack takes.
int limit_of(const std::function<plan(int)>& make) {
  int good = 1;
  for (int step = 256; step > 0; step /= 2) {
    if (rows_on_small_stack(make(good + step)) != too_deep) good += step;
  }
  return good;
}

TEST(DeepPlans, what_is_not_refused_runs_to_the_end_of_the_stack) {
  for (const auto& [name, outer] : operations()) {
    EXPECT_GE(limit_of([&outer = outer](int depth) { return select(nest(outer, depth)); }), 20) << name;
  }
  for (const auto& [name, outer] : nodes()) {
    EXPECT_GE(limit_of([&outer = outer](int depth) { return select(nest(outer, depth)); }), 20) << name;
  }
}

TEST(DeepPlans, a_plan_made_on_a_large_stack_is_not_run_on_a_small_one) {
  for (const bool is_wide : {false, true}) {
    auto statement = std::make_unique<runnable>(
        planned(is_wide ? select(nest(nodes()[0].second, 1000)) : select(nest(left<Sum>(), 1500))));
    EXPECT_EQ(run(*statement).size(), 1U);
    execution_context context{statement->constants, {std::int64_t{1}, true}, {}, 0};
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
  const auto chain = [&](const nesting& outer, int depth, expression last) {
    return rows_of(select(nest(outer, depth, std::move(last))));
  };
  for (const auto& [outer, last, result] : {std::tuple{left<Or>(2), 1, "(true)"},
                                            {right<Or>(2), 1, "(true)"},
                                            {right<Or>(2), 2, "(false)"},
                                            {left<And>(1), 1, "(true)"},
                                            {left<And>(1), 2, "(false)"},
                                            {right<And>(1), 2, "(false)"}}) {
    EXPECT_EQ(chain(outer, 20'000, parameter_of(static_cast<std::uint64_t>(last))), result);
    EXPECT_EQ(rows_on_small_stack(select(nest(outer, 20'000, parameter_of(static_cast<std::uint64_t>(last))))), result);
  }
  EXPECT_EQ(chain(left<Sum>(), 2000, one()), "(i2001)");
  EXPECT_EQ(chain(right<Sum>(), 2000, one()), "(i2001)");
  EXPECT_EQ(chain(right<Difference>(), 2000, one()), "(i1)");
  EXPECT_EQ(chain(left<Concatenation>(3), 2000, parameter_of(3)), "('')");
  EXPECT_EQ(chain(conditional<std::int64_t>(2), 2000, one()), "(i1)");
}

// Each level looks at its own columns only; all of them in every level would take hours.
TEST(DeepPlans, extensions_inside_extensions_take_no_more_than_their_rows) {
  EXPECT_EQ(rows_of(select(nest(nodes()[2].second, 1500))), "(i1)");
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
  const auto widths = [](const std::vector<row>& all) { return all.size() == 1 ? all[0].size() : 0; };
  EXPECT_EQ(widths(run(planned(project(std::vector<expression>(count, column(1)), generate(1))))), count);

  Concatenation texts;
  texts.operands.assign(count, parameter_of(3));
  EXPECT_EQ(rows_of(select(std::move(texts))), "('')");

  // Keys by the thousand, all of them looked up again; and a row that has more columns than can be read.
  const auto grouped = [](std::uint32_t keys, std::uint32_t items) {
    Aggregation any;
    std::vector<expression> read;
    for (std::uint32_t i = 0; i < keys; ++i) any.group_by.push_back({one(), column(10 + i)});
    for (std::uint32_t i = 0; i < items; ++i) read.push_back(column(10 + i));
    any.child = own(generate(1));
    return project(std::move(read), std::move(any));
  };
  EXPECT_EQ(widths(run(planned(grouped(count, 32768)))), 32768U);
  EXPECT_EQ(rows_of(grouped(count, count)), "bad numeric conversion: positive overflow");
}

// Each column is defined by the one before, a million steps if every one were followed to its end.
TEST(WidePlans, references_defined_by_references) {
  constexpr std::uint32_t count = 30'000;
  const auto reference = [](std::uint32_t number) { return computed<OV_OBJ_REF>{{number, 0, 0, 0}}; };
  Extension first;
  Extension second;
  std::vector<expression> items;
  for (std::uint32_t i = 1; i <= count; ++i) {
    first.assignments.push_back({one(), reference(i)});
    second.assignments.push_back({reference(i - 1), reference(i)});
    items.push_back(reference(count + 1 - i));
  }
  first.assignments.push_back({literal(parameter<OV_OBJ_REF>{0}), reference(0)});
  first.child = own(generate(1));
  second.child = own(std::move(first));
  const auto types = std::get<1>(physical_to_exec::Plan(project(std::move(items), std::move(second))));
  EXPECT_EQ(std::ranges::count_if(types, [](const auto& type) { return type.index() == 9; }), count);
}

}  // namespace
}  // namespace tests
