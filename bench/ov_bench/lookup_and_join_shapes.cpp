#include <random>

#include "shape.hpp"

using namespace ovhost;

namespace bench {

namespace {

using object = core_loop::object;

constexpr std::size_t lookups = 10'000;

std::vector<std::int64_t> random_ids(std::size_t rows) {
  std::mt19937_64 random(7);
  std::vector<std::int64_t> ids(lookups);
  for (std::int64_t& id : ids) id = static_cast<std::int64_t>(random() % rows);
  return ids;
}

plan make_lookup(query& q, std::size_t /*rows*/) {
  const table_variable t = q.over("item", "t");
  return project({t["v"], t["name"]}, scan(t, "by_id", {key::equal(parameter(0, value_kind::int64))}));
}

std::function<plan()> make_lookup_again(query& q) {
  const table_variable t = q.over("item", "t");
  const OV_OBJ_REF index = q.names().index(t.table(), "by_id").object;
  return [t, index, v = t["v"], name = t["name"], range = key::equal(parameter(0, value_kind::int64))] {
    return project({v, name}, physical_queryplan::QueryPlan::Scan{t.variable(), index, {range}, true});
  };
}

std::uint64_t look_up(core_loop& core, std::int64_t id) {
  static const std::uint64_t by_id = core.index("item.by_id");
  static const std::uint32_t v = core.column("item.v");
  static const std::uint32_t name = core.column("item.name");
  std::uint64_t sum = 0;
  core.walk(by_id, id, id, [&](object at) {
    sum += static_cast<std::uint64_t>(core.number(at, v)) + core.text(at, name).size();
    return true;
  });
  return sum;
}

shape lookup(std::string name) {
  shape made{std::move(name), make_lookup, "SELECT v, name FROM item WHERE id = ?", look_up, random_ids};
  made.steps = [](std::size_t) { return lookups; };
  return made;
}

shape planned_lookup() {
  shape made = lookup("lookup_with_planning");
  made.make_again = make_lookup_again;
  return made;
}

shape range() {
  const auto make = [](query& q, std::size_t rows) {
    const table_variable t = q.over("item", "t");
    const auto first = static_cast<std::int64_t>(rows / 2);
    const auto count = static_cast<std::int64_t>(rows / 100);
    const scan_range keys = key::both(key::at_least(lit(first)), key::below(lit(first + count)));
    return project({t["name"]}, scan(t, "by_a", {keys}));
  };
  const auto floor = [](core_loop& core, std::int64_t) {
    std::uint64_t sum = 0;
    const auto first = static_cast<std::int64_t>(core.rows() / 2);
    const auto count = static_cast<std::int64_t>(core.rows() / 100);
    const std::uint32_t name = core.column("item.name");
    core.walk(core.index("item.by_a"), first, first + count - 1, [&](object at) {
      sum += core.text(at, name).size();
      return true;
    });
    return sum;
  };
  shape made{"range_1", make, "SELECT name FROM item WHERE a >= $rows / 2 AND a < $rows / 2 + $rows / 100", floor};
  made.steps = [](std::size_t rows) { return rows / 100; };
  return made;
}

std::uint64_t look_up_owners(core_loop& core, std::int64_t /*parameter*/) {
  std::uint64_t sum = 0;
  const std::uint64_t owners = core.index("owner.by_id");
  const std::uint32_t id = core.column("item.id");
  const std::uint32_t owner = core.column("item.owner");
  const std::uint32_t name = core.column("owner.name");
  core.walk(core.index("item.by_id"), [&](object item) {
    const std::int64_t wanted = core.number(item, owner);
    core.walk(owners, wanted, wanted, [&](object found) {
      sum += static_cast<std::uint64_t>(core.number(item, id)) + core.text(found, name).size();
      return true;
    });
    return true;
  });
  return sum;
}

shape index_join(std::string name, plan (*kind)(plan, plan), const std::string& sql) {
  const auto make = [kind](query& q, std::size_t) {
    const table_variable i = q.over("item", "i");
    const table_variable o = q.over("owner", "o");
    return project({i["id"], o["name"]}, kind(scan(i, "by_id"), scan(o, "by_id", {key::equal(i["owner"])})));
  };
  return {std::move(name), make, "SELECT i.id, o.name FROM item i " + sql + " owner o ON o.id = i.owner",
          look_up_owners};
}

shape equality_full_join() {
  const auto make = [](query& q, std::size_t) {
    const table_variable l = q.over("pair", "l");
    const table_variable r = q.over("pair", "r");
    return project({l["id"], r["id"]}, full_join(eq(l["k"], r["k"]), scan(l, "by_id"), scan(r, "by_id")));
  };
  const auto floor = [](core_loop& core, std::int64_t) {
    const std::uint32_t k = core.column("pair.k");
    std::vector<std::int64_t> keys;
    core.walk(core.index("pair.by_id"), [&](object at) {
      keys.push_back(core.number(at, k));
      return true;
    });
    std::uint64_t found = 0;
    core.walk(core.index("pair.by_id"), [&](object at) {
      const std::int64_t key = core.number(at, k);
      for (const std::int64_t each : keys) found += each == key ? 1 : 0;
      return true;
    });
    return found;
  };
  shape made{"join_full", make, "SELECT l.id, r.id FROM pair l FULL JOIN pair r ON l.k = r.k", floor};
  made.steps = [](std::size_t) { return pair_rows * pair_rows; };
  return made;
}

// Joins of items with items on columns without an index.
using condition = expression (*)(const table_variable& left, const table_variable& right);

expression same_many(const table_variable& left, const table_variable& right) {
  return eq(right["many"], left["many"]);
}
expression same_name(const table_variable& left, const table_variable& right) {
  return eq(right["name"], left["name"]);
}
expression many_is_v(const table_variable& left, const table_variable& right) { return eq(right["many"], left["v"]); }
expression same_many_and_b(const table_variable& left, const table_variable& right) {
  return both(same_many(left, right), eq(right["b"], left["b"]));
}
expression same_tens_and_many(const table_variable& left, const table_variable& right) {
  return both(eq(right["tens"], left["tens"]), same_many(left, right));
}
expression same_half_and_other_b(const table_variable& left, const table_variable& right) {
  return both(eq(right["half"], left["half"]), ne(right["b"], left["c"]));
}

template <class Kind>
shape plain_join(std::string name, condition on, const std::string& sql, Kind kind) {
  const auto make = [on, kind](query& q, std::size_t) {
    const table_variable l = q.over("item", "l");
    const table_variable r = q.over("item", "r");
    return project({l["id"], r["id"]}, kind(scan(l, "by_id"), filter(on(l, r), scan(r, "by_id"))));
  };
  return {std::move(name), make, "SELECT l.id, r.id FROM item l " + sql, reads({"id", "id"})};
}

shape semi_join() {
  const auto make = [](query& q, std::size_t) {
    const table_variable l = q.over("item", "l");
    const table_variable r = q.over("item", "r");
    return project({l["id"]}, join(scan(l, "by_id"), limit(lit(1), {}, filter(many_is_v(l, r), scan(r, "by_id")))));
  };
  return {"plain_semi", make, "SELECT l.id FROM item l WHERE EXISTS (SELECT 1 FROM item r WHERE r.many = l.v)",
          reads({"id", "v"})};
}

shape anti_join() {
  const auto make = [](query& q, std::size_t) {
    const table_variable l = q.over("item", "l");
    const table_variable r = q.over("item", "r");
    plan side = limit(lit(1), {}, filter(many_is_v(l, r), scan(r, "by_id")));
    return project({l["id"]}, filter(is_null(r), left_join(scan(l, "by_id"), std::move(side))));
  };
  return {"plain_anti", make, "SELECT l.id FROM item l WHERE NOT EXISTS (SELECT 1 FROM item r WHERE r.many = l.v)",
          reads({"id", "v"})};
}

shape plain_full_join() {
  const auto make = [](query& q, std::size_t) {
    const table_variable l = q.over("item", "l");
    const table_variable r = q.over("item", "r");
    return project({l["id"], r["id"]}, full_join(many_is_v(l, r), scan(l, "by_id"), scan(r, "by_id")));
  };
  return {"plain_full", make, "SELECT l.id, r.id FROM item l FULL JOIN item r ON r.many = l.v", reads({"id", "v"})};
}

}  // namespace

std::vector<shape> lookup_and_join_shapes() {
  return {range(),
          lookup("lookup"),
          planned_lookup(),
          index_join("join_inner", join, "JOIN"),
          index_join("join_left", left_join, "LEFT JOIN"),
          equality_full_join(),
          plain_join("plain_inner", same_many, "JOIN item r ON r.many = l.many", join),
          plain_join("plain_inner_text", same_name, "JOIN item r ON r.name = l.name", join),
          plain_join("plain_inner_two", same_many_and_b, "JOIN item r ON r.many = l.many AND r.b = l.b", join),
          plain_join("plain_inner_few", same_tens_and_many, "JOIN item r ON r.tens = l.tens AND r.many = l.many", join),
          plain_join("plain_inner_nulls", same_half_and_other_b, "JOIN item r ON r.half = l.half AND r.b <> l.c", join),
          plain_join("plain_left", many_is_v, "LEFT JOIN item r ON r.many = l.v", left_join),
          semi_join(),
          anti_join(),
          plain_full_join()};
}

}  // namespace bench
