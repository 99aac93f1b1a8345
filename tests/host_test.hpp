// What tests share that define tables as a host does, plan queries over them and look at the rows.
#ifndef TESTS_HOST_TEST_HPP_
#define TESTS_HOST_TEST_HPP_

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "outcome.hpp"
#include "ovhost/plans/plans.hpp"
#include "ovhost/plans/statement.hpp"
#include "ovhost/schema/schema.hpp"
#include "ovhost/schema/session.hpp"

namespace tests {

// Spells all rows of a statement, or the error that ends it.
inline std::string rows_of(const ovhost::statement& planned, std::uint64_t context) {
  return outcome([&] { return planned.rows(context); });
}

class HostTest : public testing::Test {
 protected:
  explicit HostTest(const std::vector<ovhost::table_definition>& tables,
                    const std::vector<ovhost::index_definition>& indexes) {
    definitions.define_tables(tables);
    for (const ovhost::index_definition& each : indexes) definitions.define_index(each);
  }

  OV_OBJ_REF insert(const char* table, const std::vector<ovcoredb::cell>& cells) {
    return database.insert(ovhost::catalog(reading.context()).table(table).tag, cells);
  }

  std::string rows_of_plan(ovhost::plan of) {
    return outcome([&] { return ovhost::statement(std::move(of)).rows(reading.context()); });
  }

  ovcoredb::database database;
  ovhost::schema definitions{database};
  ovhost::session reading{database};
};

}  // namespace tests

#endif  // TESTS_HOST_TEST_HPP_
