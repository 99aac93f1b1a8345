#include "demo_query.hpp"
#include "ovhost/values/text.hpp"

using namespace ovhost;

namespace {

plan flights_per_day(query& q) {
  const table_variable f = q.over("flight", "f");
  const table_variable from = f.follow("origin");
  const table_variable to = f.follow("destination");
  const computation per_day = q.define("per_day", div(ovhost::to(value_kind::decimal, f["count"]), lit(365)));
  return project({from["iata"], to["iata"], f["count"], per_day},
                 reach(to, reach(from, extend({per_day}, scan(f, "by_count", {key::above(lit(11000))})))));
}

plan degrees_of_travel(query& q) {
  const table_variable f = q.over("flight", "f");
  const table_variable from = f.follow("origin");
  const table_variable to = f.follow("destination");
  const computation north = q.define("north", sub(to["latitude"], from["latitude"]));
  const computation south = q.define("south", neg(sub(to["latitude"], from["latitude"])));
  return project(
      {from["iata"], to["iata"], north, south},
      filter(gt(mul(north, north), lit(900.0)), extend({north, south}, reach(to, reach(from, scan(f, "by_route"))))));
}

plan busy_and_quiet(query& q) {
  const table_variable f = q.over("flight", "f");
  const computation traffic =
      q.define("traffic", when(ge(f["count"], lit(10000)), text(u"busy"),
                               when(ge(f["count"], lit(9500)), text(u"steady"), text(u"quiet"))));
  return project({f["count"], traffic}, extend({traffic}, scan(f, "by_count", {key::above(lit(9000))})));
}

plan names_like(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["name"]}, filter(like(a["name"], text(u"%lake%field%")), scan(a, "by_name")));
}

plan names_like_prefix(query& q) {
  const table_variable a = q.over("airport", "a");
  const expression pattern = parameter(0, value_kind::text);
  return project({a["name"]},
                 filter(like(a["name"], pattern), scan(a, "by_name", {key::begins_with(like_prefix(pattern))})));
}

plan labels(query& q) {
  const table_variable a = q.over("airport", "a");
  const computation label = q.define("label", concat({a["name"], text(u", "), a["city"], text(u" "), a["state"]}));
  return project({a["iata"], label},
                 extend({label}, filter(starts_with(a["iata"], text(u"M")), scan(a, "by_state_city"))));
}

plan conversions(query& q) {
  const table_variable a = q.over("airport", "a");
  const computation whole = q.define("whole", to(value_kind::int64, a["latitude"]));
  const computation exact = q.define("exact", to(value_kind::decimal, to(value_kind::int64, a["longitude"])));
  const computation number = q.define("number", to(value_kind::float32, a["object_number"]));
  const computation truth = q.define("truth", to(value_kind::boolean, whole));
  return project({a["iata"], a["latitude"], whole, exact, number, truth},
                 extend({exact, number, truth}, extend({whole}, scan(a, "by_iata", {key::above(text(u"YS"))}))));
}

plan null_logic(query& q) {
  const table_variable a = q.over("airport", "a");
  const computation texan = q.define("texan", eq(a["state"], text(u"TX")));
  const computation other = q.define("not_texan", negated(texan));
  const computation american = q.define("texan_or_american", either(texan, eq(a["country"], text(u"USA"))));
  const computation foreign = q.define("texan_and_foreign", both(texan, ne(a["country"], text(u"USA"))));
  const computation one = q.define("texan_xor_american", exclusive(texan, eq(a["country"], text(u"USA"))));
  return project({a["iata"], a["state"], a["country"], texan, other, american, foreign, one},
                 extend({other, american, foreign, one},
                        extend({texan}, filter(either(is_null(a["state"]), eq(a["city"], text(u"El Paso"))),
                                               scan(a, "by_state_city")))));
}

plan kinds_of_things(query& q) {
  const table_variable f = q.over("flight", "f");
  const computation is_place = q.define("starts_at_a_place", is_a(f["origin"], "Place"));
  const computation is_airport = q.define("starts_at_an_airport", is_a(f["origin"], "airport"));
  const computation is_flight = q.define("starts_at_a_flight", is_a(f["origin"], "flight"));
  return project({f, is_place, is_airport, is_flight},
                 extend({is_place, is_airport, is_flight}, scan(f, "by_count", {key::above(lit(13000))})));
}

}  // namespace

std::vector<demo_query> expression_queries() {
  return {
      {"flights_per_day", "arithmetic on decimals", flights_per_day},
      {"degrees_of_travel", "arithmetic on the properties of referenced objects", degrees_of_travel},
      {"busy_and_quiet", "CASE", busy_and_quiet},
      {"names_like", "LIKE, which does not care for case", names_like},
      {"names_like_prefix",
       "LIKE 'San %al', with the index range that its prefix allows",
       names_like_prefix,
       {encode(u"San %al")}},
      {"labels", "concatenation, NULL where a part is NULL", labels},
      {"conversions", "conversions of numbers", conversions},
      {"null_logic", "three-valued logic", null_logic},
      {"kinds_of_things", "type tests: airports are places", kinds_of_things},
  };
}
