#ifndef OVHOST_TESTS_STAFF_DATABASE_HPP_
#define OVHOST_TESTS_STAFF_DATABASE_HPP_

#include <sstream>
#include <string>

#include "ovcoredb/database.hpp"
#include "ovhost/csv_loader.hpp"
#include "ovhost/schema.hpp"
#include "ovhost/session.hpp"

namespace ovhost {

// People, and employees that are people and have a boss.
struct staff_database {
  ovcoredb::database database;
  schema definitions{database};
  session reading{database};

  staff_database() {
    definitions.define_tables({{"Staff.Person", {{"name", value_kind::text}, {"born", value_kind::int64}}},
                               {"Staff.Employee",
                                {{"salary", value_kind::decimal},
                                 {"boss", refers_to{"Staff.Employee"}},
                                 {"active", value_kind::boolean},
                                 {"badge", value_kind::binary},
                                 {"height", value_kind::float64}},
                                "Staff.Person"}});
    definitions.define_index({"Staff.Person", "everybody", {{"object_number"}}});
    definitions.define_index({"Staff.Employee", "by_name", {{"name"}}, true});
    definitions.define_index({"Staff.Employee", "by_salary", {{"salary", false}, {"name"}}});
  }

  std::size_t load_employees(const std::string& text) {
    std::istringstream input(text);
    return load_csv(database, "Staff.Employee", input, "staff.csv",
                    {{{.property = "boss", .null_words = {"nobody", "-"}, .key = "name"}}});
  }

  std::size_t load_people(const std::string& text) {
    std::istringstream input(text);
    return load_csv(database, "Staff.Person", input, "people.csv");
  }
};

// The message of the error of this type that an action throws; others pass.
template <class Error, class Action>
std::string message_of(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error.what();
  }
  return "nothing was thrown";
}

// Ada has no boss; Dan's salary is NULL.
inline constexpr const char* five_employees =
    "name,born,salary,boss,active,badge,height\n"
    "Ada,1815,100.5,nobody,true,00ff,1.65\n"
    "Ben,1950,80,Ada,true,,\n"
    "Cyd,1960,80,Ada,false,,1.7\n"
    "Dan,,,Ben,,,\n"
    "\"Eve, \"\"E\"\"\",1970,12.000001,Dan,true,,\n";

}  // namespace ovhost

#endif  // OVHOST_TESTS_STAFF_DATABASE_HPP_
