#include <cstdint>

#include "demo_query.hpp"
#include "ovhost/values/text.hpp"

using namespace ovhost;

namespace {

plan all_airports(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["iata"], a["name"], a["city"], a["state"], a["latitude"], a["longitude"]}, scan(a, "by_iata"));
}

plan in_vermont(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["iata"], a["name"], a["city"]}, filter(eq(a["state"], text(u"VT")), scan(a, "by_iata")));
}

plan in_the_far_north(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["iata"], a["city"], a["latitude"]}, filter(gt(a["latitude"], lit(70.0)), scan(a, "by_iata")));
}

plan busy_routes(query& q) {
  const table_variable f = q.over("flight", "f");
  return project({f["origin"], f["destination"], f["count"]},
                 scan(f, "by_count", {key::both(key::at_least(lit(9000)), key::below(lit(11000)))}));
}

plan names_with_prefix(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["name"], a["iata"]}, scan(a, "by_name", {key::begins_with(text(u"San "))}));
}

plan hawaii_by_city(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["state"], a["city"], a["name"]}, scan(a, "by_state_city", {key::equal(text(u"HI"))}));
}

plan without_a_state(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["iata"], a["name"], a["state"], a["country"]}, scan(a, "by_state_city", {key::null()}));
}

plan last_codes(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["iata"], a["name"]}, scan(a, "by_iata", {key::above(text(u"Y"))}, walk::descending));
}

plan routes_with_cities(query& q) {
  const table_variable f = q.over("flight", "f");
  const table_variable from = f.follow("origin");
  const table_variable to = f.follow("destination");
  return project({from["city"], to["city"], f["count"]},
                 reach(to, reach(from, scan(f, "by_count", {key::above(lit(10000))}))));
}

plan south_of_in_state(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["iata"], a["city"], a["latitude"]},
                 filter(lt(a["latitude"], parameter(1, value_kind::float64)),
                        scan(a, "by_state_city", {key::equal(parameter(0, value_kind::text))})));
}

plan objects_and_references(query& q) {
  const table_variable f = q.over("flight", "f");
  return project({f, f["object_number"], f["origin"], f["destination"]},
                 filter(eq(f["count"], lit(1961)), scan(f, "by_route")));
}

}  // namespace

std::vector<demo_query> reading_queries() {
  return {
      {"all_airports", "a full scan in key order", all_airports},
      {"in_vermont", "a filter on a text", in_vermont},
      {"in_the_far_north", "a filter on a number", in_the_far_north},
      {"busy_routes", "a range of an index, whose key is stored in descending order", busy_routes},
      {"names_with_prefix", "all names that begin with a text, as a range of an index", names_with_prefix},
      {"hawaii_by_city", "equality on the first of two key columns", hawaii_by_city},
      {"without_a_state", "the objects without a value in a key column", without_a_state},
      {"last_codes", "a range of an index, walked backwards", last_codes},
      {"routes_with_cities", "properties of the objects that two references refer to", routes_with_cities},
      {"south_of_in_state", "parameters: Texas, 26.5 degrees", south_of_in_state, {encode(u"TX"), 26.5}},
      {"objects_and_references", "the object itself, its number, and references", objects_and_references},
  };
}
