// Plans of every kind over small tables with NULLs and duplicates, for tests that do the same to all of them.
#ifndef TESTS_RELIABILITY_PLAN_CATALOGUE_HPP_
#define TESTS_RELIABILITY_PLAN_CATALOGUE_HPP_

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ovcoredb/database.hpp"
#include "ovhost/plans/plans.hpp"
#include "ovhost/schema/schema.hpp"
#include "ovhost/schema/session.hpp"
#include "ovhost/values/text.hpp"

namespace tests {

struct catalogued_plan {
  std::string name;
  std::function<ovhost::plan()> make;  // a fresh copy for each use
  std::string error;                   // how planning or running it ends, as outcome() says it; empty: with rows
};

// Every node kind, operation, aggregate, key operation and type of column, inner sides of joins, kept sides,
// parameters, and statements that end with an error. The tables and what the plans name go with the catalogue.
class plan_catalogue {
 public:
  plan_catalogue();

  ovcoredb::database database;
  std::vector<catalogued_plan> plans;
  const std::vector<ov::sql_executor::value> parameters = {std::uint64_t{2}, ovhost::encode(u"B%"), 2.5,
                                                           operator_library::NullValue{}};

  std::uint64_t context() const { return reading_.context(); }

 private:
  using columns = std::vector<ovhost::expression>;
  using child = std::function<ovhost::plan()>;

  OV_OBJ_REF insert_towns();  // the first of them
  void add_scans();
  void add_operations();
  void add_joins();
  void add_kept_sides();
  void add_aggregates();
  void add_orders();
  void add_errors();

  // Adds a plan of these columns over a child, which may end with an error, or of computations.
  void add(const char* name, const columns& items, const child& below);
  void fail(const char* error, const char* name, const columns& items, const child& below);
  void add_computed(const char* name, const columns& computed, const char* error = "");

  ovhost::schema definitions_{database};
  ovhost::session reading_{database};
  OV_OBJ_REF first_ = insert_towns();
  ovhost::query query_;
  ovhost::table_variable t_ = query_.over("Town", "t");
  ovhost::table_variable s_ = query_.over("Town", "s");
};

}  // namespace tests

#endif  // TESTS_RELIABILITY_PLAN_CATALOGUE_HPP_
