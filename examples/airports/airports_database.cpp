#include "airports_database.hpp"

#include "ovhost/csv/csv_loader.hpp"
#include "ovhost/schema/schema.hpp"
#include "ovhost/schema/session.hpp"

using ovhost::refers_to;
using ovhost::value_kind;

namespace {

void define(ovhost::schema& schema) {
  schema.define_table({"place",
                       {{"name", value_kind::text},
                        {"city", value_kind::text},
                        {"state", value_kind::text},
                        {"country", value_kind::text}}});
  schema.define_table(
      {"airport",
       {{"iata", value_kind::text}, {"latitude", value_kind::float64}, {"longitude", value_kind::float64}},
       "place"});
  schema.define_table(
      {"flight",
       {{"origin", refers_to{"airport"}}, {"destination", refers_to{"airport"}}, {"count", value_kind::uint64}}});

  schema.define_index({"airport", "by_iata", {{"iata"}}, true});
  schema.define_index({"airport", "by_name", {{"name"}}});
  schema.define_index({"airport", "by_state_city", {{"state"}, {"city"}}});
  schema.define_index({"flight", "by_route", {{"origin"}, {"destination"}}, true});
  schema.define_index({"flight", "by_destination", {{"destination"}}});
  schema.define_index({"flight", "by_count", {{"count", false}}});
}

}  // namespace

void load_airports(ovcoredb::database& database, const std::string& folder) {
  ovhost::schema schema(database);
  define(schema);
  const ovhost::session session(database);
  ovhost::load_csv_file(database, "airport", folder + "/airports.csv",
                        {{{.property = "city", .null_words = {"NA"}}, {.property = "state", .null_words = {"NA"}}}});
  ovhost::load_csv_file(database, "flight", folder + "/flights.csv",
                        {{{.property = "origin", .key = "iata"}, {.property = "destination", .key = "iata"}}});
}
