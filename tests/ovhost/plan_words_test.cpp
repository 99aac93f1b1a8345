#include "ovhost/plan_words.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ovhost/expression_words.hpp"
#include "staff_database.hpp"

namespace ovhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(PlanWords, SayEveryOperation) {
  const staff_database staff;
  query q;
  const table_variable e = q.over("Staff.Employee", "e");
  const struct {
    expression said;
    const char* words;
  } cases[] = {
      {eq(e["name"], text(u"Ada")), "e.name = 'Ada'"},
      {negated(both(ne(e["born"], lit(1)), is_null(e["boss"]))), "not ((e.born <> 1) and (e.boss is null))"},
      {either(is_not_null(e["boss"]), le(e["born"], lit(-1))), "(e.boss is not null) or (e.born <= -1)"},
      {exclusive(lt(e["born"], lit(1)), e["active"]), "(e.born < 1) xor e.active"},
      {div(add(e["born"], neg(lit(2.5))), decimal("1.5")), "(e.born + (-2.5)) / 1.5"},
      {sub(mul(e["born"], lit(2)), lit(1U)), "(e.born * 2) - 1"},
      {both(gt(e["born"], lit(1)), ge(e["born"], null())), "(e.born > 1) and (e.born >= NULL)"},
      {like(e["name"], text(u"A%")), "e.name like 'A%'"},
      {starts_with(e["name"], like_prefix(text(u"A%"))), "e.name begins with prefix of pattern('A%')"},
      {concat({e["name"], text(u"!")}), "concat(e.name, '!')"},
      {when(e["active"], e["name"], null()), "case when e.active then e.name else NULL end"},
      {is_a(e, "Staff.Person"), "e is a type('Staff.Person')"},
      {oid(e.follow("boss")), "object number(e.boss)"},
      {to(value_kind::float64, parameter(2, value_kind::text)), "double(parameter 2)"},
      {e.follow("boss").follow("boss")["salary"], "e.boss.boss.salary"},
  };
  const expression_words words(q.names(), q.columns());
  for (const auto& each : cases) EXPECT_EQ(words(each.said), each.words);
}

// Every alternative of a plan, in a tree that need not make sense.
plan one_of_each(query& q) {
  const table_variable e = q.over("Staff.Employee", "e");
  const table_variable boss = e.follow("boss");
  const computation twice = q.define("twice", mul(e["born"], lit(2)));
  const computation name = q.define("name", e["name"]);
  const aggregation_column people = q.count_rows("people");
  const aggregation_column mean = q.average("mean", e["salary"]);
  plan scanned = scan(e, "by_salary", {key::both(key::at_least(decimal("1")), key::below(decimal("9"))), key::null()},
                      walk::descending);
  plan joined = left_join(join(filter(e["active"], extend({twice}, std::move(scanned))), bind(boss)), bind(boss));
  plan grouped = group({people, mean}, {name}, full_join(eq(twice, lit(4)), std::move(joined), bind(boss)));
  return project(
      {name, people, mean},
      limit(lit(3U), lit(1U), order({ascending(name), descending(mean)}, unite(std::move(grouped), bind(boss)))));
}

TEST(PlanWords, DescribeEveryStep) {
  const staff_database staff;
  query q;
  const plan_step steps = describe(one_of_each(q), q.names(), q.columns());
  EXPECT_THAT(steps.columns, ElementsAre("name", "people", "mean"));
  EXPECT_EQ(as_tree(steps),
            "project: name, people, mean\n"
            "  limit: skip 1; at most 3\n"
            "    order: by name; by mean descending\n"
            "      union\n"
            "        group: people := count of rows; mean := average(e.salary); by name := e.name\n"
            "          full join: on twice = 4\n"
            "            left join: for each left row the right rows, or one of NULLs\n"
            "              join: for each left row the right rows\n"
            "                filter: e.active\n"
            "                  extend: twice := e.born * 2\n"
            "                    scan Staff.Employee as e: by index by_salary (salary descending, name); backwards; "
            "where salary < 9; where salary >= 1; where name = NULL (NULL is the lowest)\n"
            "                one row: Staff.Employee e.boss := e.boss\n"
            "              one row: Staff.Employee e.boss := e.boss\n"
            "            one row: Staff.Employee e.boss := e.boss\n"
            "        one row: Staff.Employee e.boss := e.boss\n");
}

TEST(PlanWords, DrawAGraphWithQuotedLabels) {
  const staff_database staff;
  query q;
  const table_variable e = q.over("Staff.Employee", "e");
  const plan drawn = project({e["name"]}, filter(eq(e["name"], text(u"\"\\")), scan(e, "by_name")));
  const std::string dot = as_dot(describe(drawn, q.names(), q.columns()));
  EXPECT_THAT(dot, HasSubstr(R"(step1 [label="filter\le.name = '\"\\'\l"];)"));
  EXPECT_THAT(dot, HasSubstr(R"(step2 -> step1 [label="e"];)"));
  EXPECT_THAT(dot, HasSubstr(R"(step1 -> step0 [label="e"];)"));
}

TEST(Plans, RefuseNamesAndKeysThatDoNotExist) {
  const staff_database staff;
  query q;
  const table_variable e = q.over("Staff.Employee", "e");
  EXPECT_THROW(q.over("Staff.Nobody", "n"), unknown_name);
  EXPECT_THROW(e["shoe"], unknown_name);
  EXPECT_THROW(e.follow("shoe"), unknown_name);
  EXPECT_THROW(e.follow("name"), std::invalid_argument);
  EXPECT_THROW(scan(e, "by_shoe"), unknown_name);
  EXPECT_THROW(scan(e, "by_name", {key::any(), key::any()}), std::invalid_argument);
  EXPECT_THROW(bind(e), std::logic_error);
}

}  // namespace
}  // namespace ovhost
