#include "demo_query.hpp"
#include "ovhost/values/text.hpp"

using namespace ovhost;

namespace {

expression in_state(const table_variable& airport, std::u16string_view state) {
  return eq(airport["state"], text(state));
}

plan departures_from_vermont(query& q) {
  const table_variable a = q.over("airport", "a");
  const table_variable f = q.over("flight", "f");
  const table_variable to = f.follow("destination");
  plan departures = join(scan(f, "by_route", {key::equal(a)}), bind(to));
  return project({a["city"], to["city"], f["count"]},
                 join(scan(a, "by_state_city", {key::equal(text(u"VT"))}), std::move(departures)));
}

plan connections_over_two_legs(query& q) {
  const table_variable from = q.over("airport", "from");
  const table_variable first = q.over("flight", "first");
  const table_variable second = q.over("flight", "second");
  const table_variable over = first.follow("destination");
  const table_variable to = second.follow("destination");
  plan second_leg = join(scan(second, "by_route", {key::equal(first["destination"])}), bind(to));
  plan first_leg = join(scan(first, "by_route", {key::equal(from)}), bind(over));
  return project({over["city"], to["city"]},
                 join(scan(from, "by_iata", {key::equal(parameter(0, value_kind::text))}),
                      join(std::move(first_leg), filter(in_state(to, u"AK"), std::move(second_leg)))));
}

plan arrivals_in_hawaii(query& q) {
  const table_variable a = q.over("airport", "a");
  const table_variable f = q.over("flight", "f");
  return project({a["name"], f["origin"], f["count"]},
                 left_join(scan(a, "by_state_city", {key::equal(text(u"HI"))}),
                           filter(gt(f["count"], lit(5000)), scan(f, "by_destination", {key::equal(a)}))));
}

plan cities_of_two_states(query& q) {
  const table_variable a = q.over("airport", "a");
  const table_variable b = q.over("airport", "b");
  return project({a["city"], a["iata"], b["city"], b["iata"]},
                 full_join(eq(a["city"], b["city"]), scan(a, "by_state_city", {key::equal(text(u"RI"))}),
                           scan(b, "by_state_city", {key::equal(text(u"VT"))})));
}

plan every_aggregate(query& q) {
  const table_variable f = q.over("flight", "f");
  const table_variable from = f.follow("origin");
  const table_variable to = f.follow("destination");
  const computation state = q.define("state", from["state"]);
  const aggregation_column routes = q.count_rows("routes");
  const aggregation_column known = q.count("with_state", to["state"]);
  const aggregation_column flights = q.sum("flights", f["count"]);
  const aggregation_column most = q.maximum("most", f["count"]);
  const aggregation_column fewest = q.minimum("fewest", f["count"]);
  const aggregation_column mean = q.average("mean", f["count"]);
  const aggregation_column latitude = q.average("mean_latitude", to["latitude"]);
  const aggregation_column states = q.count_distinct("states", to["state"]);
  const aggregation_column pairs = q.count_distinct_rows("pairs_of_cities", {from["city"], to["city"]});
  return project({state, routes, known, flights, most, fewest, mean, latitude, states, pairs},
                 order({ascending(state)}, group({routes, known, flights, most, fewest, mean, latitude, states, pairs},
                                                 {state}, reach(to, reach(from, scan(f, "by_route"))))));
}

plan all_flights_together(query& q) {
  const table_variable f = q.over("flight", "f");
  const aggregation_column routes = q.count_rows("routes");
  const aggregation_column flights = q.sum("flights", f["count"]);
  return project({routes, flights}, group({routes, flights}, {}, scan(f, "by_route")));
}

plan ordered_by_two_keys(query& q) {
  const table_variable a = q.over("airport", "a");
  return project({a["country"], a["state"], a["latitude"], a["iata"]},
                 order({ascending(a["state"]), descending(a["latitude"])},
                       filter(gt(a["latitude"], lit(48.9)), scan(a, "by_iata"))));
}

plan second_page(query& q) {
  const table_variable f = q.over("flight", "f");
  const table_variable from = f.follow("origin");
  const table_variable to = f.follow("destination");
  return project({from["iata"], to["iata"], f["count"]},
                 reach(to, reach(from, limit(parameter(0, value_kind::uint64), parameter(1, value_kind::uint64),
                                             scan(f, "by_count")))));
}

// One side of a union names its columns as the other does.
plan to_and_from(query& q) {
  const table_variable hub = q.over("airport", "hub");
  const table_variable f = q.over("flight", "f");
  const table_variable from = f.follow("origin");
  const table_variable to = f.follow("destination");
  const computation way = q.define("way", text(u"to"));
  const computation city = q.define("city", to["city"]);
  const auto side = [&](const table_variable& other, const char* index, assignment its_way, assignment its_city) {
    return project({way, city, f["count"]},
                   extend({std::move(its_way), std::move(its_city)},
                          reach(other, join(scan(hub, "by_iata", {key::equal(parameter(0, value_kind::text))}),
                                            scan(f, index, {key::equal(hub)})))));
  };
  return project({way, city, f["count"]},
                 order({descending(f["count"])},
                       unite(side(to, "by_route", way, city),
                             side(from, "by_destination", way.with(text(u"from")), city.with(from["city"])))));
}

plan states_by_traffic(query& q) {
  const table_variable a = q.over("airport", "a");
  const table_variable f = q.over("flight", "f");
  const computation state = q.define("state", a["state"]);
  const aggregation_column flights = q.sum("flights", f["count"]);
  return project(
      {state, flights},
      limit(lit(5U), std::nullopt,
            order({descending(flights)},
                  group({flights}, {state}, join(scan(a, "by_iata"), scan(f, "by_route", {key::equal(a)}))))));
}

}  // namespace

std::vector<demo_query> relational_queries() {
  return {
      {"departures_from_vermont", "an inner join through the index on a reference", departures_from_vermont},
      {"connections_over_two_legs",
       "joins whose inner sides see the outer rows: from MSP to Alaska",
       connections_over_two_legs,
       {encode(u"MSP")}},
      {"arrivals_in_hawaii", "a left join: airports without busy arrivals too", arrivals_in_hawaii},
      {"cities_of_two_states", "a full join: airports of Rhode Island and Vermont in cities of one name",
       cities_of_two_states},
      {"every_aggregate", "grouping with every aggregate", every_aggregate},
      {"all_flights_together", "aggregates without groups", all_flights_together},
      {"ordered_by_two_keys", "ordering by several keys", ordered_by_two_keys},
      {"second_page", "limit 5, offset 10", second_page, {std::uint64_t{5}, std::uint64_t{10}}},
      {"to_and_from", "a union of two joins: flights to and from FAR", to_and_from, {encode(u"FAR")}},
      {"states_by_traffic", "join, group, order and limit in one", states_by_traffic},
  };
}
