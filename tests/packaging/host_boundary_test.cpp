// What ovhost throws is caught by a program that shares nothing but headers with it.
#include <gtest/gtest.h>

#include <sstream>

#include "host_test.hpp"
#include "ovhost/csv/csv_loader.hpp"
#include "ovhost/schema/core_error.hpp"

namespace ovhost {
namespace {

class HostBoundary : public tests::HostTest {
 protected:
  HostBoundary() : HostTest({{"Town", {{"name", value_kind::text}}}}, {{"Town", "by_name", {{"name"}}, true}}) {}
};

TEST_F(HostBoundary, ErrorsAreCaughtByTheirTypes) {
  EXPECT_THROW(definitions.define_table({"Town", {}}), schema_error);
  EXPECT_THROW(query().over("City", "c"), unknown_name);
  EXPECT_THROW(catalog(0).tables(), core_error);
  std::istringstream twice("name\nBern\nBern\n");
  EXPECT_THROW(load_csv(database, "Town", twice, "twice.csv"), csv_error);
  EXPECT_THROW(statement(scan(query().over("Town", "t"), "by_name")), error_handling::OVException);
  insert("Town", {u"Bern"});
  EXPECT_THROW(insert("Town", {u"Bern"}), ovcoredb::unique_violation);
}

}  // namespace
}  // namespace ovhost
