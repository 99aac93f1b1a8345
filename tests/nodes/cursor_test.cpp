// A cursor shows the rows that an enumerator hands out.
#include "ov_sql_executor/execution/cursor.hpp"

#include <gtest/gtest.h>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/planning/plan.hpp"
#include "reliability/plan_catalogue.hpp"

namespace tests {
namespace {

rows rows_shown(const runnable& statement, execution_context& context) {
  rows all;
  cursor shown(statement, context);
  EXPECT_TRUE(shown.row().empty());
  while (shown.next()) all.emplace_back(shown.row().begin(), shown.row().end());
  EXPECT_TRUE(shown.row().empty());
  EXPECT_FALSE(shown.next()) << "the end stays the end";
  return all;
}

rows rows_handed_out(const runnable& statement, execution_context& context) {
  rows all;
  const std::unique_ptr<enumerator> source(statement.root->create_enumerator(context));
  while (std::optional<row> next = source->next(context)) all.push_back(*std::move(next));
  return all;
}

TEST(Cursor, shows_what_next_returns) {
  const plan_catalogue catalogue;
  int ended_with_rows = 0;
  for (const catalogued_plan& each : catalogue.plans) {
    const auto outcome_of = [&](auto read) {
      return outcome([&] {
        const runnable statement = std::get<0>(physical_to_exec::Plan(each.make()));
        execution_context context{statement.constants, catalogue.parameters, {}, catalogue.context()};
        const rows all = read(statement, context);
        EXPECT_TRUE(context.row_stack.empty()) << each.name;
        ++ended_with_rows;
        return all;
      });
    };
    EXPECT_EQ(outcome_of(rows_shown), outcome_of(rows_handed_out)) << each.name;
  }
  EXPECT_GE(ended_with_rows, 80);
}

// Any root, the library's own or the host's, over rows of which the third fails, with two values below.
TEST(Cursor, leaves_the_row_stack_as_it_was) {
  const auto log = std::make_shared<journal>();
  const auto project_all = [](std::unique_ptr<node> child) {
    return std::make_unique<projection>(std::move(child), columns({3, 2}));
  };
  const auto keep_true = [](std::unique_ptr<node> child) {
    return std::make_unique<filter>(std::move(child), column(2));
  };
  runnable statements[] = {{given("(true i1)(true i2)(i3 i3)", log), {}},
                           {keep_true(given("(true i1)(true i2)(i3 i3)", log)), {}},
                           {project_all(keep_true(given("(true i1)(true i2)(i3 i3)", log))), {}}};
  for (const runnable& statement : statements) {
    const bool fails = &statement != statements;
    for (const int moves : {0, 1, 2, 3}) {
      execution_context context{{}, {}, vals("i7 'a'"), 0};
      {
        cursor shown(statement, context);
        for (int move = 1; move <= moves; ++move) {
          if (move == 3 && fails) {
            EXPECT_THROW(shown.next(), db_util::db_exception);
          } else {
            ASSERT_TRUE(shown.next());
            EXPECT_EQ(shown.row().size(), 2U);
            EXPECT_EQ(context.row_stack.size(), 4U);
          }
        }
      }
      EXPECT_EQ(spell(context.row_stack), spell(vals("i7 'a'"))) << moves;
      EXPECT_EQ(log->alive, 0);
    }
  }
}

}  // namespace
}  // namespace tests
