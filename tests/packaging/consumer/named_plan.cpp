// A host that names what it means: defines a table, loads a file, writes a plan, and prints it in words and its rows.
#include <exception>
#include <iostream>
#include <sstream>
#include <utility>

#include "ovhost/csv/csv_loader.hpp"
#include "ovhost/plans/plan_drawing.hpp"
#include "ovhost/plans/plans.hpp"
#include "ovhost/plans/statement.hpp"
#include "ovhost/plans/table_printer.hpp"
#include "ovhost/schema/schema.hpp"
#include "ovhost/schema/session.hpp"

using namespace ovhost;  // NOLINT: a plan reads best without

void define_and_load(ovcoredb::database& database, const char* file) {
  schema tables(database);
  tables.define_table({"Town", {{"name", value_kind::text}, {"people", value_kind::uint64}}});
  tables.define_index({"Town", "by_name", {{"name"}}, true});
  const session reading(database);
  std::istringstream input(file);
  load_csv(database, "Town", input, "towns.csv");
}

void print_large_towns(const session& on) {
  query q;
  const table_variable town = q.over("Town", "town");
  plan large = project({town["name"], town["people"]}, filter(gt(town["people"], lit(32000U)), scan(town, "by_name")));
  const plan_step steps = describe(large, q.names(), q.columns());
  std::cout << as_tree(steps) << '\n';
  const statement planned(std::move(large));
  table_printer table(steps.columns, planned.types(), 10);
  planned.run(on.context(), {}, [&table](row&& each) { table.add(each); });
  table.print(std::cout);
}

int main() try {
  ovcoredb::database database;
  define_and_load(database, "name,people\nZug,31000\nUster,35000\nBern,134000\n");
  const session reading(database);
  print_large_towns(reading);
  try {
    query().over("City", "city");
  } catch (const unknown_name& error) {
    std::cout << error.what() << '\n';
  }
  return 0;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
