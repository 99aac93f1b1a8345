#ifndef OVHOST_TESTS_STAFF_HPP_
#define OVHOST_TESTS_STAFF_HPP_

#include <gmock/gmock.h>

#include <sstream>
#include <string>

#include "host_test.hpp"
#include "ovhost/csv/csv_loader.hpp"

namespace ovhost {

// People, and employees that are people and have a boss.
class Staff : public tests::HostTest {
 protected:
  Staff()
      : HostTest({{"Staff.Person", {{"name", value_kind::text}, {"born", value_kind::int64}}},
                  {"Staff.Employee",
                   {{"salary", value_kind::decimal},
                    {"boss", refers_to{"Staff.Employee"}},
                    {"active", value_kind::boolean},
                    {"badge", value_kind::binary},
                    {"height", value_kind::float64}},
                   "Staff.Person"}},
                 {{"Staff.Person", "everybody", {{"object_number"}}},
                  {"Staff.Employee", "by_name", {{"name"}}, true},
                  {"Staff.Employee", "by_salary", {{"salary", false}, {"name"}}}}) {}

  std::size_t load(const char* table, const std::string& text, const csv_options& options = {}) {
    std::istringstream input(text);
    return load_csv(database, table, input, "staff.csv", options);
  }

  // Expects that what is refused changes nothing.
  template <class Error, class Action>
  void expect_refused(const std::string& message, Action action) {
    const std::uint64_t before = database.object_count();
    EXPECT_THAT(action, testing::ThrowsMessage<Error>(testing::HasSubstr(message)));
    EXPECT_EQ(database.object_count(), before) << message;
  }

  query q;
  table_variable e = q.over("Staff.Employee", "e");
};

}  // namespace ovhost

#endif  // OVHOST_TESTS_STAFF_HPP_
