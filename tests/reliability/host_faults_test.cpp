// What a host defines and loads, with every allocation failing in turn: a call that throws has changed nothing, the
// same call succeeds afterwards, and so do those that build upon it.
#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <list>
#include <memory>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "host_test.hpp"
#include "ovhost/csv/csv_loader.hpp"
#include "ovhost/schema/core_error.hpp"
#include "reliability/failing_allocations.hpp"

namespace tests {
namespace {

using core_shim::place, core_shim::repeat;
using ovhost::project, ovhost::refers_to, ovhost::value_kind;

struct world {
  ovcoredb::database database;
  ovhost::session reading{database};
  std::optional<ovhost::schema> definitions;

  // Spells everything that the metadata list, and how many objects there are.
  std::string contents() const {
    std::string all = std::to_string(database.object_count()) + " objects";
    if (!definitions) return all;
    const ovhost::catalog names(reading.context());
    for (const ovhost::table_info& table : names.tables()) {
      all += ", table " + table.name + ":";
      for (const ovhost::property_info& each : names.properties(table)) all += " " + each.name;
      for (const ovhost::index_info& each : names.indexes(table)) all += " " + each.name;
    }
    return all;
  }

  std::string rows() const {
    ovhost::query q;
    const ovhost::table_variable e = q.over("Employee", "e");
    const ovhost::table_variable boss = e.follow("boss");
    return rows_of(ovhost::statement(project({e["name"], boss["name"]}, reach(boss, scan(e, "by_salary")))),
                   reading.context());
  }
};

// The last table comes after everything else.
const std::pair<const char*, std::function<void(world&)>> steps[] = {
    {"the metadata themselves", [](world& of) { of.definitions.emplace(of.database); }},
    {"several tables",
     [](world& of) {
       of.definitions->define_tables(
           {{"Person", {{"name", value_kind::text}}},
            {"Employee", {{"salary", value_kind::decimal}, {"boss", refers_to{"Employee"}}}, "Person"}});
     }},
    {"an index",
     [](world& of) {
       of.definitions->define_index({"Employee", "by_name", {{"name"}}, true});
     }},
    {"objects",
     [](world& of) {
       std::istringstream file("name,salary,boss\nAda_the_First_of_the_Name,9.5,\nBen,3,Ada_the_First_of_the_Name\n");
       ovhost::load_csv(of.database, "Employee", file, "staff.csv", {{{.property = "boss", .key = "name"}}});
     }},
    {"an index over objects",
     [](world& of) {
       of.definitions->define_index({"Employee", "by_salary", {{"salary"}, {"name", false}}});
     }},
    {"a further table", [](world& of) {
       of.definitions->define_table({"City", {{"name", value_kind::text}}});
     }}};

void take_steps(world& of, std::size_t first, std::size_t end) {
  for (std::size_t at = first; at < end; ++at) steps[at].second(of);
}

// Fails at the k-th allocation of a step; false when there was none and the step was taken untouched.
bool check_point(world& of, std::size_t step, std::uint64_t k, repeat how, place in) {
  take_steps(of, 0, step);
  const std::string before = of.contents();
  bool failed = false;
  failing_allocations::fail(k, how, in);
  try {
    steps[step].second(of);
  } catch (const std::bad_alloc&) {
    failed = true;
  } catch (const ovhost::core_error& error) {
    failed = error.status() == ORV_OUT_OF_MEMORY;
  }
  const std::uint64_t failures = failing_allocations::stop();
  EXPECT_EQ(failed, failures != 0);
  if (failed) {
    EXPECT_EQ(of.contents(), before);
    steps[step].second(of);
  }
  take_steps(of, step + 1, std::size(steps));
  EXPECT_EQ(of.rows(), "('Ben' 'Ada_the_First_of_the_Name')('Ada_the_First_of_the_Name' NULL)");
  return failures != 0;
}

// Checks every point of every step, failing once and, in a second round, from then on. Returns how many there are. For
// failures in the core the worlds stay until the end, so that each has contexts that have not been used, in which the
// core grows.
std::uint64_t check_all(place in) {
  std::vector<std::unique_ptr<world>> worlds;
  const auto check_step = [&](std::size_t step, repeat how) {
    std::uint64_t k = 0;
    bool is_reached = true;
    while (is_reached && !testing::Test::HasFailure()) {
      if (in != place::core) worlds.clear();
      worlds.push_back(std::make_unique<world>());
      is_reached = check_point(*worlds.back(), step, ++k, how, in);
    }
    if (testing::Test::HasFailure()) ADD_FAILURE() << "at allocation " << k << " of " << steps[step].first;
    return k - 1;
  };
  std::uint64_t points = 0;
  for (std::size_t step = 0; step < std::size(steps); ++step) {
    const std::uint64_t once = check_step(step, repeat::once);
    EXPECT_EQ(check_step(step, repeat::from_then_on), once) << steps[step].first;
    points += once;
  }
  while (!worlds.empty()) worlds.pop_back();
  return points;
}

TEST(HostFaults, a_failing_allocation_leaves_nothing_behind) {
  const std::uint64_t points = check_all(place::elsewhere);
  std::cout << "allocation failure points of definitions and loads: " << points << '\n';
  EXPECT_GE(points, 300U);
}

// The core keeps the memory of contexts that have ended: those that other tests have used are held out of the way.
TEST(HostFaults, a_failing_allocation_in_the_core_leaves_nothing_behind) {
  constexpr std::size_t most_used_by_other_tests = 3000;
  const ovcoredb::database elsewhere;
  std::list<ovcoredb::context> out_of_the_way;
  while (out_of_the_way.size() < most_used_by_other_tests) out_of_the_way.emplace_back(elsewhere);
  const std::uint64_t points = check_all(place::core);
  std::cout << "allocation failure points of definitions and loads in the core: " << points << '\n';
  EXPECT_GE(points, 20U);
}

}  // namespace
}  // namespace tests
