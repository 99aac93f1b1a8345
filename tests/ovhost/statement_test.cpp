#include "ovhost/statement.hpp"

#include <gtest/gtest.h>

#include <string>

#include "ovhost/text.hpp"
#include "ovhost/value_words.hpp"
#include "staff_database.hpp"

namespace ovhost {
namespace {

class Statement : public testing::Test {
 protected:
  void SetUp() override { staff.load_employees(five_employees); }

  // "Ada 100.5 | Ben 80": the rows of these columns over a plan.
  std::string run(const std::vector<expression>& columns, plan child) {
    std::string result;
    for (const row& each : statement(project(columns, std::move(child))).rows(staff.reading.context())) {
      if (!result.empty()) result += " |";
      for (const value& shown : each) result += (result.empty() ? "" : " ") + cell_words(shown, "");
    }
    return result;
  }

  staff_database staff;
  query q;
  table_variable e = q.over("Staff.Employee", "e");
};

TEST_F(Statement, ReadsWhatTheFileSays) {
  EXPECT_EQ(run({e["name"], e["born"], e["salary"], e["active"], e["badge"], e["height"]}, scan(e, "by_name")),
            "Ada 1815 100.5 true 0x00ff 1.65 | Ben 1950 80 true NULL NULL | Cyd 1960 80 false NULL 1.7 | "
            "Dan NULL NULL NULL NULL NULL | Eve, \"E\" 1970 12.000001 true NULL NULL");
}

TEST_F(Statement, FollowsReferences) {
  const table_variable boss = e.follow("boss");
  const table_variable their_boss = boss.follow("boss");
  EXPECT_EQ(run({e["name"], boss["name"], their_boss["name"]}, reach(their_boss, reach(boss, scan(e, "by_name")))),
            "Ada NULL NULL | Ben Ada NULL | Cyd Ada NULL | Dan Ben Ada | Eve, \"E\" Dan Ben");
}

// Employees are people, and an index over people holds them. Names of types are found in any case.
TEST_F(Statement, ScansDerivedObjectsThroughTheirBase) {
  staff.load_people("name\nZoe\n");
  const table_variable p = q.over("Staff.Person", "p");
  EXPECT_EQ(run({p["name"]}, scan(p, "everybody")), "Ada | Ben | Cyd | Dan | Eve, \"E\" | Zoe");
  EXPECT_EQ(run({p["name"]}, filter(negated(is_a(p, "staff.EMPLOYEE")), scan(p, "everybody"))), "Zoe");
  EXPECT_EQ(run({p["name"]}, filter(negated(is_a(p, "Staff.person")), scan(p, "everybody"))), "");
}

}  // namespace
}  // namespace ovhost
