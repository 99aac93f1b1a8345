#include "shape.hpp"

using namespace ovhost;

namespace bench {

namespace {

using object = core_loop::object;

// The five common aggregates over number columns, by some keys.
shape group_by(std::string name, const std::vector<std::string>& keys, std::vector<std::string> key_numbers,
               std::vector<std::string> key_texts) {
  const auto make = [keys](query& q, std::size_t) {
    const table_variable t = q.over("item", "t");
    std::vector<aggregate> aggregates = {q.count_rows("count"), q.sum("sum", t["b"]), q.minimum("minimum", t["c"]),
                                         q.maximum("maximum", t["c"]), q.average("average", t["b"])};
    std::vector<assignment> groups;
    std::vector<expression> columns;
    for (const std::string& key : keys) {
      const computation column = q.define(key, t[key]);
      groups.emplace_back(column);
      columns.emplace_back(column);
    }
    for (const aggregate& each : aggregates) columns.emplace_back(aggregation_column(each));
    return project(std::move(columns), group(std::move(aggregates), std::move(groups), scan(t, "by_id")));
  };
  std::string list;
  for (const std::string& key : keys) list += (list.empty() ? "" : ", ") + key;
  key_numbers.insert(key_numbers.end(), {"b", "c", "c", "b"});
  return {std::move(name), make,
          "SELECT " + list + ", count(*), sum(b), min(c), max(c), avg(b) FROM item GROUP BY " + list,
          reads(std::move(key_numbers), std::move(key_texts))};
}

shape counted() {
  const auto make = [](query& q, std::size_t) {
    const table_variable t = q.over("item", "t");
    const aggregation_column count = q.count_rows("count");
    return project({count}, group({count}, {}, scan(t, "by_id")));
  };
  const auto floor = [](core_loop& core, std::int64_t) {
    return core.walk_behind(core.index("item.by_id"), ~std::uint64_t{0}, [](object) { return true; });
  };
  return {"count_all", make, "SELECT count(*) FROM item", floor};
}

shape filtered_total() {
  const auto make = [](query& q, std::size_t) {
    const table_variable t = q.over("item", "t");
    const aggregation_column count = q.count_rows("count");
    const aggregation_column sum = q.sum("sum", t["b"]);
    return project({count, sum}, group({count, sum}, {}, filter(lt(t["v"], lit(500'000)), scan(t, "by_id"))));
  };
  const auto floor = [](core_loop& core, std::int64_t) {
    const std::uint32_t v = core.column("item.v");
    const std::uint32_t b = core.column("item.b");
    std::uint64_t sum = 0;
    core.walk(core.index("item.by_id"), [&](object at) {
      if (core.number(at, v) < 500'000) sum += static_cast<std::uint64_t>(core.number(at, b));
      return true;
    });
    return sum;
  };
  return {"aggregate_filtered", make, "SELECT count(*), sum(b) FROM item WHERE v < 500000", floor};
}

// The groups that are large enough, by a column with an index: SQLite reads nothing but that, and in order.
shape large_groups() {
  const auto make = [](query& q, std::size_t) {
    const table_variable t = q.over("trip", "t");
    const aggregation_column count = q.count_rows("count");
    const computation k = q.define("k", t["k"]);
    return project({k, count}, filter(gt(count, lit(4)), group({count}, {k}, scan(t, "by_k"))));
  };
  return {"group_having", make, "SELECT k, count(*) FROM trip GROUP BY k HAVING count(*) > 4", reads_of("trip", {"k"})};
}

shape sums_of_cases() {
  const auto make = [](query& q, std::size_t) {
    const table_variable t = q.over("item", "t");
    const aggregation_column low = q.sum("low", when(lt(t["v"], lit(500'000)), t["b"], lit(0)));
    const aggregation_column high = q.sum("high", when(lt(t["v"], lit(500'000)), lit(0), t["c"]));
    const aggregation_column count = q.sum("count", when(eq(t["tens"], lit(3)), lit(1), lit(0)));
    return project({low, high, count}, group({low, high, count}, {}, scan(t, "by_id")));
  };
  return {"sums_of_cases", make,
          "SELECT sum(CASE WHEN v < 500000 THEN b ELSE 0 END), sum(CASE WHEN v < 500000 THEN 0 ELSE c END), "
          "sum(CASE WHEN tens = 3 THEN 1 ELSE 0 END) FROM item",
          reads({"v", "b", "v", "tens"})};
}

shape aggregates_of_nulls() {
  const auto make = [](query& q, std::size_t) {
    const table_variable t = q.over("trip", "t");
    const std::vector<aggregation_column> all = {q.count("count", t["tenth"]), q.sum("sum", t["tenth"]),
                                                 q.minimum("minimum", t["half"]), q.maximum("maximum", t["half"]),
                                                 q.average("average", t["tenth"])};
    return project({all.begin(), all.end()}, group({all.begin(), all.end()}, {}, scan(t, "by_id")));
  };
  return {"aggregate_nulls", make, "SELECT count(tenth), sum(tenth), min(half), max(half), avg(tenth) FROM trip",
          reads_of("trip", {"tenth", "tenth", "half", "half", "tenth"})};
}

shape distinct(std::string name, const std::string& column, floor_loop floor) {
  const auto make = [column](query& q, std::size_t) {
    const table_variable t = q.over("item", "t");
    const aggregation_column count = q.count_distinct("count", t[column]);
    return project({count}, group({count}, {}, scan(t, "by_id")));
  };
  return {std::move(name), make, "SELECT count(DISTINCT " + column + ") FROM item", std::move(floor)};
}

template <class Keys>
shape ordered(std::string name, const std::vector<std::string>& columns, Keys keys, const std::string& sql,
              floor_loop floor) {
  const auto make = [columns, keys](query& q, std::size_t) {
    const table_variable t = q.over("item", "t");
    std::vector<expression> items;
    for (const std::string& column : columns) items.push_back(t[column]);
    return project(std::move(items), order(keys(t), scan(t, "by_id")));
  };
  return {std::move(name), make, sql, std::move(floor)};
}

// The first ten rows of an order.
template <class Keys>
shape first_of(std::string name, const std::string& column, Keys keys, const std::string& sql, floor_loop floor) {
  const auto make = [column, keys](query& q, std::size_t) {
    const table_variable t = q.over("item", "t");
    return project({t[column]}, limit(lit(10), lit(0), order(keys(t), scan(t, "by_id"))));
  };
  return {std::move(name), make, sql, std::move(floor)};
}

shape limited() {
  const auto make = [](query& q, std::size_t rows) {
    const table_variable t = q.over("item", "t");
    return project({t["v"]}, limit(lit(10), lit(static_cast<std::int64_t>(rows / 2)), scan(t, "by_id")));
  };
  const auto floor = [](core_loop& core, std::int64_t) {
    const std::uint32_t v = core.column("item.v");
    std::size_t found = 0;
    std::uint64_t sum = 0;
    core.walk_behind(core.index("item.by_id"), core.rows() / 2, [&](object at) {
      sum += static_cast<std::uint64_t>(core.number(at, v));
      return ++found < 10;
    });
    return sum;
  };
  shape made{"limit_offset", make, "SELECT v FROM item LIMIT 10 OFFSET $rows / 2", floor};
  made.steps = [](std::size_t rows) { return rows / 2; };
  return made;
}

// What is sorted is computed, so that rows are more than references to objects.
shape ordered_by_sum() {
  const auto make = [](query& q, std::size_t) {
    const table_variable t = q.over("item", "t");
    const computation sum = q.define("sum", add(t["v"], t["b"]));
    return project({t["id"], sum}, order({ascending(sum)}, extend({sum}, scan(t, "by_id"))));
  };
  return {"order_computed", make, "SELECT id, v + b AS s FROM item ORDER BY s", reads({"v", "b", "id"})};
}

// Reads the trips in the order of their towns, as SQLite does.
shape ordered_join() {
  const auto make = [](query& q, std::size_t) {
    const table_variable t = q.over("trip", "t");
    const table_variable o = q.over("town", "o");
    plan both = join(scan(t, "by_town"), scan(o, "by_id", {key::equal(t["town_id"])}));
    return project({t["id"], o["name"]}, order({ascending(o["name"]), descending(t["id"])}, std::move(both)));
  };
  return {"order_join", make,
          "SELECT t.id, o.name FROM trip t CROSS JOIN town o ON o.id = t.town_id ORDER BY o.name, t.id DESC",
          reads_of("trip", {"town_id", "id", "id"})};
}

shape united() {
  const auto make = [](query& q, std::size_t) {
    const table_variable l = q.over("item", "l");
    const table_variable r = q.over("item", "r");
    const computation value = q.define("value", l["b"]);
    return project({value}, unite(project({value}, extend({value}, scan(l, "by_id"))),
                                  project({value}, extend({value.with(r["c"])}, scan(r, "by_id")))));
  };
  shape made{"union_of_two", make, "SELECT b FROM item UNION ALL SELECT c FROM item", reads({"b"}, {}, 2)};
  made.steps = [](std::size_t rows) { return 2 * rows; };
  return made;
}

}  // namespace

std::vector<shape> collecting_shapes() {
  return {
      group_by("group_10", {"tens"}, {"tens"}, {}),
      group_by("group_10000", {"thousands"}, {"thousands"}, {}),
      group_by("group_half", {"many"}, {"many"}, {}),
      group_by("group_text", {"word"}, {}, {"word"}),
      group_by("group_two_keys", {"tens", "c"}, {"tens", "c"}, {}),
      large_groups(),
      counted(),
      filtered_total(),
      sums_of_cases(),
      aggregates_of_nulls(),
      distinct("distinct_int", "many", reads({"many"})),
      distinct("distinct_text", "name", reads({}, {"name"})),
      ordered(
          "order_int", {"id", "v"}, [](const auto& t) { return std::vector<order_key>{ascending(t["v"])}; },
          "SELECT id, v FROM item ORDER BY v", reads({"v", "id", "v"})),
      ordered(
          "order_text", {"id", "name"}, [](const auto& t) { return std::vector<order_key>{ascending(t["name"])}; },
          "SELECT id, name FROM item ORDER BY name", reads({"id"}, {"name", "name"})),
      ordered(
          "order_long_text", {"id", "note"}, [](const auto& t) { return std::vector<order_key>{ascending(t["note"])}; },
          "SELECT id, note FROM item ORDER BY note", reads({"id"}, {"note", "note"})),
      ordered(
          "order_two_keys", {"id", "b", "v"},
          [](const auto& t) {
            return std::vector<order_key>{ascending(t["b"]), descending(t["v"])};
          },
          "SELECT id, b, v FROM item ORDER BY b, v DESC", reads({"b", "v", "id", "b", "v"})),
      ordered_by_sum(),
      ordered_join(),
      first_of(
          "order_int_first", "v", [](const auto& t) { return std::vector<order_key>{ascending(t["v"])}; },
          "SELECT v FROM item ORDER BY v LIMIT 10", reads({"v"})),
      first_of(
          "order_text_first", "name", [](const auto& t) { return std::vector<order_key>{ascending(t["name"])}; },
          "SELECT name FROM item ORDER BY name LIMIT 10", reads({}, {"name"})),
      first_of(
          "order_two_first", "v",
          [](const auto& t) {
            return std::vector<order_key>{ascending(t["b"]), descending(t["v"])};
          },
          "SELECT v FROM item ORDER BY b, v DESC LIMIT 10", reads({"b", "v"})),
      limited(),
      united(),
  };
}

}  // namespace bench
