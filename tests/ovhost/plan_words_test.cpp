#include "ovhost/plan_words.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ovhost/expression_words.hpp"
#include "staff_database.hpp"

namespace ovhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Every operation, with the type of its result.
TEST(PlanWords, SayEveryOperation) {
  using kind = value_kind;
  const staff_database staff;
  query q;
  const table_variable e = q.over("Staff.Employee", "e");
  const expression name = e["name"];
  const expression born = e["born"];
  const expression active = e["active"];
  const struct {
    expression said;
    value_kind type;
    const char* words;
  } cases[] = {
      {eq(name, text(u"Ada")), kind::boolean, "e.name = 'Ada'"},
      {negated(both(ne(born, lit(1)), is_null(e["boss"]))), kind::boolean, "not ((e.born <> 1) and (e.boss is null))"},
      {either(is_not_null(e["boss"]), le(born, lit(-1))), kind::boolean, "(e.boss is not null) or (e.born <= -1)"},
      {exclusive(lt(born, lit(1)), active), kind::boolean, "(e.born < 1) xor e.active"},
      {div(add(born, neg(lit(2.5F))), lit(1.5)), kind::float64, "(e.born + (-2.5)) / 1.5"},
      {sub(mul(born, lit(2)), decimal("1.5")), kind::decimal, "(e.born * 2) - 1.5"},
      {neg(lit(1U)), kind::int64, "-1"},
      {mul(lit(1U), lit(1U)), kind::int64, "1 * 1"},
      {both(gt(born, lit(1)), ge(born, null())), kind::boolean, "(e.born > 1) and (e.born >= NULL)"},
      {like(name, text(u"A%")), kind::boolean, "e.name like 'A%'"},
      {starts_with(name, like_prefix(text(u"A%"))), kind::boolean, "e.name begins with prefix of pattern('A%')"},
      {like_prefix(name), kind::text, "prefix of pattern(e.name)"},
      {concat({name, text(u"!")}), kind::text, "concat(e.name, '!')"},
      {when(active, null(), born), kind::int64, "case when e.active then NULL else e.born end"},
      {is_a(e, "Staff.Person"), kind::boolean, "e is a type('Staff.Person')"},
      {oid(e.follow("boss")), kind::uint64, "object number(e.boss)"},
      {to(kind::float64, parameter(2, kind::text)), kind::float64, "double(parameter 2)"},
      {parameter(3, kind::binary), kind::binary, "parameter 3"},
      {e.follow("boss").follow("boss")["salary"], kind::decimal, "e.boss.boss.salary"},
  };
  const expression_words words(q.names(), q.columns());
  for (const auto& each : cases) {
    EXPECT_EQ(words(each.said), each.words);
    EXPECT_EQ(kind_of(each.said), each.type) << each.words;
  }
  for (const value_kind target : {kind::boolean, kind::uint64, kind::int64, kind::decimal, kind::float32, kind::float64,
                                  kind::text, kind::set_specifier}) {
    EXPECT_EQ(kind_of(to(target, name)), target);
  }
  EXPECT_THROW(to(kind::reference, name), std::invalid_argument);
  EXPECT_THROW(decimal("1.0000001"), std::invalid_argument);
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
