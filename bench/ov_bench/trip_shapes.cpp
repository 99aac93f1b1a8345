#include "shape.hpp"

using namespace ovhost;

namespace bench {

namespace {

using object = core_loop::object;

// Each trip with the name of what lies two or three references away.
plan follow_two(query& q, std::size_t /*rows*/) {
  const table_variable trip = q.over("trip", "t");
  const table_variable town = trip.follow("town");
  const table_variable state = town.follow("state");
  return project({trip["id"], state["name"]}, reach(state, reach(town, scan(trip, "by_id"))));
}

plan follow_three(query& q, std::size_t /*rows*/) {
  const table_variable trip = q.over("trip", "t");
  const table_variable town = trip.follow("town");
  const table_variable state = town.follow("state");
  const table_variable country = state.follow("country");
  return project({trip["id"], country["name"]}, reach(country, reach(state, reach(town, scan(trip, "by_id")))));
}

// The same by the ids, through an index for each.
plan states_by_id(query& q, const table_variable& trip, const table_variable& state, const char* index) {
  const table_variable town = q.over("town", "o");
  return join(join(scan(trip, index), scan(town, "by_id", {key::equal(trip["town_id"])})),
              scan(state, "by_id", {key::equal(town["state_id"])}));
}

plan countries_by_id(query& q, const table_variable& trip, const table_variable& country, const char* index) {
  const table_variable state = q.over("state", "s");
  return join(states_by_id(q, trip, state, index), scan(country, "by_id", {key::equal(state["country_id"])}));
}

plan join_two(query& q, std::size_t /*rows*/) {
  const table_variable trip = q.over("trip", "t");
  const table_variable state = q.over("state", "s");
  return project({trip["id"], state["name"]}, states_by_id(q, trip, state, "by_id"));
}

plan join_three(query& q, std::size_t /*rows*/) {
  const table_variable trip = q.over("trip", "t");
  const table_variable country = q.over("country", "c");
  return project({trip["id"], country["name"]}, countries_by_id(q, trip, country, "by_id"));
}

// Reads the trips in the order of their towns, as SQLite does.
plan total_of_three(query& q, std::size_t /*rows*/) {
  const table_variable trip = q.over("trip", "t");
  const table_variable country = q.over("country", "c");
  const aggregation_column sum = q.sum("sum", country["id"]);
  return project({sum}, group({sum}, {}, countries_by_id(q, trip, country, "by_town")));
}

// From the other end: the trips to each town of each state.
plan join_back(query& q, std::size_t /*rows*/) {
  const table_variable trip = q.over("trip", "t");
  const table_variable town = q.over("town", "o");
  const table_variable state = q.over("state", "s");
  return project({state["id"], trip["c"]}, join(join(scan(state, "by_id"), scan(town, "by_state", {key::equal(state)})),
                                                scan(trip, "by_town", {key::equal(town)})));
}

// CROSS JOIN keeps SQLite to the order of the tables, and NOT INDEXED to that of the trips.
const char* const states_of_trips =
    "SELECT t.id, s.name FROM trip t NOT INDEXED CROSS JOIN town o ON o.id = t.town_id CROSS JOIN state s ON s.id = "
    "o.state_id";
const char* const countries_of_trips =
    "SELECT t.id, c.name FROM trip t NOT INDEXED CROSS JOIN town o ON o.id = t.town_id CROSS JOIN state s ON s.id = "
    "o.state_id "
    "CROSS JOIN country c ON c.id = s.country_id";
const char* const total_of_countries =
    "SELECT sum(c.id) FROM trip t CROSS JOIN town o ON o.id = t.town_id CROSS JOIN state s ON s.id = o.state_id "
    "CROSS JOIN country c ON c.id = s.country_id";
const char* const trips_of_states =
    "SELECT s.id, t.c FROM state s JOIN town o ON o.state_id = s.id JOIN trip t ON t.town_id = o.id";

std::uint64_t read_states(core_loop& core, std::int64_t /*parameter*/) {
  const std::uint32_t id = core.column("trip.id");
  const std::uint32_t town = core.column("trip.town");
  const std::uint32_t state = core.column("town.state");
  const std::uint32_t name = core.column("state.name");
  std::uint64_t sum = 0;
  core.walk(core.index("trip.by_id"), [&](object trip) {
    const object found = core.reference(core.reference(trip, town), state);
    sum += static_cast<std::uint64_t>(core.number(trip, id)) + core.text(found, name).size();
    return true;
  });
  return sum;
}

std::uint64_t read_countries(core_loop& core, std::int64_t /*parameter*/) {
  const std::uint32_t id = core.column("trip.id");
  const std::uint32_t town = core.column("trip.town");
  const std::uint32_t state = core.column("town.state");
  const std::uint32_t country = core.column("state.country");
  const std::uint32_t name = core.column("country.name");
  std::uint64_t sum = 0;
  core.walk(core.index("trip.by_id"), [&](object trip) {
    const object found = core.reference(core.reference(core.reference(trip, town), state), country);
    sum += static_cast<std::uint64_t>(core.number(trip, id)) + core.text(found, name).size();
    return true;
  });
  return sum;
}

// Pairs of trips with the same k, each pair once.
shape self_join() {
  const auto make = [](query& q, std::size_t) {
    const table_variable l = q.over("trip", "l");
    const table_variable r = q.over("trip", "r");
    return project({l["id"], r["id"]},
                   join(scan(l, "by_id"), filter(gt(r["id"], l["id"]), scan(r, "by_k", {key::equal(l["k"])}))));
  };
  const auto floor = [](core_loop& core, std::int64_t) {
    const std::uint32_t k = core.column("trip.k");
    const std::uint32_t id = core.column("trip.id");
    const std::uint64_t by_k = core.index("trip.by_k");
    std::uint64_t sum = 0;
    core.walk(core.index("trip.by_id"), [&](object left) {
      const std::int64_t key = core.number(left, k);
      const std::int64_t first = core.number(left, id);
      core.walk(by_k, key, key, [&](object right) {
        const std::int64_t second = core.number(right, id);
        if (second > first) sum += static_cast<std::uint64_t>(first + second);
        return true;
      });
      return true;
    });
    return sum;
  };
  return {"join_self", make, "SELECT l.id, r.id FROM trip l JOIN trip r ON r.k = l.k AND r.id > l.id", floor};
}

// The trips of which no trip has the id as its k: three of four.
shape anti_join() {
  const auto make = [](query& q, std::size_t) {
    const table_variable l = q.over("trip", "l");
    const table_variable r = q.over("trip", "r");
    return project({l["id"]}, filter(is_null(r), left_join(scan(l, "by_id"), scan(r, "by_k", {key::equal(l["id"])}))));
  };
  return {"join_anti", make, "SELECT l.id FROM trip l LEFT JOIN trip r ON r.k = l.id WHERE r.id IS NULL",
          reads_of("trip", {"id", "id"})};
}

// The trips to no town: none. Reads them in the order of their towns, as SQLite does.
shape anti_join_of_all() {
  const auto make = [](query& q, std::size_t) {
    const table_variable t = q.over("trip", "t");
    const table_variable o = q.over("town", "o");
    return project({t["id"]},
                   filter(is_null(o), left_join(scan(t, "by_town"), scan(o, "by_id", {key::equal(t["town_id"])}))));
  };
  return {"join_anti_all", make, "SELECT t.id FROM trip t LEFT JOIN town o ON o.id = t.town_id WHERE o.id IS NULL",
          reads_of("trip", {"town_id"})};
}

}  // namespace

std::vector<shape> trip_shapes() {
  return {{"follow_two", follow_two, states_of_trips, read_states},
          {"follow_three", follow_three, countries_of_trips, read_countries},
          {"join_two", join_two, states_of_trips, read_states},
          {"join_three", join_three, countries_of_trips, read_countries},
          {"join_three_total", total_of_three, total_of_countries, read_countries},
          {"join_back", join_back, trips_of_states, reads_of("trip", {"c"})},
          self_join(),
          anti_join(),
          anti_join_of_all()};
}

}  // namespace bench
