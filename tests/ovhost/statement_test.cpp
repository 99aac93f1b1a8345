#include "ovhost/statement.hpp"

#include <gtest/gtest.h>

#include <string>

#include "ovhost/text.hpp"
#include "ovhost/value_words.hpp"
#include "staff_database.hpp"

namespace ovhost {
namespace {

// "Ada 100.5 | Ben 80": the rows of a plan, values separated by blanks.
std::string run(const staff_database& staff, plan of, std::vector<value> parameters = {}) {
  std::string result;
  for (const row& each : statement(std::move(of)).rows(staff.reading.context(), std::move(parameters))) {
    if (!result.empty()) result += " |";
    for (const value& shown : each) result += (result.empty() ? "" : " ") + cell_words(shown, "");
  }
  return result;
}

class Statement : public testing::Test {
 protected:
  void SetUp() override { staff.load_employees(five_employees); }

  staff_database staff;
  query q;
  table_variable e = q.over("Staff.Employee", "e");
};

TEST_F(Statement, ReadsWhatTheFileSays) {
  EXPECT_EQ(run(staff,
                project({e["name"], e["born"], e["salary"], e["active"], e["badge"], e["height"]}, scan(e, "by_name"))),
            "Ada 1815 100.5 true 0x00ff 1.65 | Ben 1950 80 true NULL NULL | Cyd 1960 80 false NULL 1.7 | "
            "Dan NULL NULL NULL NULL NULL | Eve, \"E\" 1970 12.000001 true NULL NULL");
}

TEST_F(Statement, WalksIndexesByTheirColumnsDirections) {
  EXPECT_EQ(run(staff, project({e["name"]}, scan(e, "by_salary"))), "Ada | Ben | Cyd | Eve, \"E\" | Dan");
  EXPECT_EQ(run(staff, project({e["name"]}, scan(e, "by_salary", {}, walk::descending))),
            "Dan | Eve, \"E\" | Cyd | Ben | Ada");
  EXPECT_EQ(run(staff, project({e["name"]}, scan(e, "by_salary", {key::equal(lit(80))}))), "Ben | Cyd");
  EXPECT_EQ(run(staff, project({e["name"]}, scan(e, "by_salary", {key::null()}))), "Dan");
  EXPECT_EQ(run(staff, project({e["name"]}, scan(e, "by_salary", {key::below(lit(80.5))}))), "Ben | Cyd | Eve, \"E\"");
  EXPECT_EQ(run(staff, project({e["name"]}, scan(e, "by_name", {key::begins_with(text(u"E"))}))), "Eve, \"E\"");
}

TEST_F(Statement, BindsParametersAnewInEachRun) {
  const statement older(
      project({e["name"]}, filter(lt(e["born"], parameter(0, value_kind::int64)), scan(e, "by_name"))));
  EXPECT_EQ(older.rows(staff.reading.context(), {std::int64_t{1955}}).size(), 2U);
  EXPECT_EQ(older.rows(staff.reading.context(), {std::int64_t{1815}}).size(), 0U);
}

TEST_F(Statement, FollowsReferences) {
  const table_variable boss = e.follow("boss");
  const table_variable their_boss = boss.follow("boss");
  EXPECT_EQ(run(staff, project({e["name"], boss["name"], their_boss["name"]},
                               reach(their_boss, reach(boss, scan(e, "by_name"))))),
            "Ada NULL NULL | Ben Ada NULL | Cyd Ada NULL | Dan Ben Ada | Eve, \"E\" Dan Ben");
}

TEST_F(Statement, FollowsReferencesByAJoinAsByAnExtension) {
  const table_variable boss = e.follow("boss");
  EXPECT_EQ(run(staff, project({e["name"], boss["name"]}, join(scan(e, "by_name"), bind(boss)))),
            run(staff, project({e["name"], boss["name"]}, reach(boss, scan(e, "by_name")))));
}

TEST_F(Statement, UnitesColumnsOfOneNameWithValuesOfTheirOwn) {
  const computation label = q.define("label", e["name"]);
  const auto side = [&](assignment labelled) {
    return project({label}, extend({std::move(labelled)}, scan(e, "by_salary", {key::equal(lit(80))})));
  };
  EXPECT_EQ(run(staff, project({label}, unite(side(label), side(label.with(text(u"?")))))), "Ben | Cyd | ? | ?");
}

// The builder tells the planner what type an aggregate's result has; the result must be of it.
TEST_F(Statement, AggregateColumnsHaveTheTypesOfTheirResults) {
  const std::vector<aggregation_column> columns = {q.sum("a", e["salary"]),
                                                   q.sum("b", e["object_number"]),
                                                   q.count("c", e["born"]),
                                                   q.count_rows("d"),
                                                   q.maximum("e", e["name"]),
                                                   q.minimum("f", e["height"]),
                                                   q.average("g", e["salary"]),
                                                   q.average("h", e["born"]),
                                                   q.average("i", e["height"]),
                                                   q.average("j", e["object_number"]),
                                                   q.count_distinct("k", e["active"]),
                                                   q.count_distinct_rows("l", {e["active"], e["salary"]})};
  const statement grouped(
      project({columns.begin(), columns.end()}, group({columns.begin(), columns.end()}, {}, scan(e, "by_name"))));
  const std::vector<row> rows = grouped.rows(staff.reading.context());
  ASSERT_EQ(rows.size(), 1U);
  for (std::size_t column = 0; column < columns.size(); ++column) {
    EXPECT_EQ(rows[0][column].index(), grouped.types()[column].index()) << "column " << column;
  }
}

// Employees are people, and an index over people holds them.
TEST_F(Statement, ScansDerivedObjectsThroughTheirBase) {
  staff.load_people("name\nZoe\n");
  const table_variable p = q.over("Staff.Person", "p");
  EXPECT_EQ(run(staff, project({p["name"]}, scan(p, "everybody"))), "Ada | Ben | Cyd | Dan | Eve, \"E\" | Zoe");
}

TEST_F(Statement, TellsTheTypesOfItsColumns) {
  const statement typed(project({e, e["boss"], e["name"], e["salary"], e["height"]}, scan(e, "by_name")));
  ASSERT_EQ(typed.types().size(), 5U);
  for (const std::size_t reference : {0U, 1U}) {
    EXPECT_EQ(std::get<physical_to_exec::RefInfo>(typed.types()[reference]).name, L"Staff.Employee");
  }
  EXPECT_EQ(value_kind{typed.types()[2].index()}, value_kind::text);
  EXPECT_EQ(value_kind{typed.types()[3].index()}, value_kind::decimal);
  EXPECT_EQ(value_kind{typed.types()[4].index()}, value_kind::float64);
}

}  // namespace
}  // namespace ovhost
