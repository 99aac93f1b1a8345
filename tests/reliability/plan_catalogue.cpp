#include "reliability/plan_catalogue.hpp"

#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "ovhost/schema/catalog.hpp"

namespace tests {

namespace {

using namespace ovhost;
using operator_library::Binary, ovcoredb::cell;

const std::vector<member_definition> members = {{"name", value_kind::text},    {"state", value_kind::text},
                                                {"size", value_kind::uint64},  {"before", refers_to{"Town"}},
                                                {"rank", value_kind::int64},   {"share", value_kind::decimal},
                                                {"area", value_kind::float64}, {"height", value_kind::float32},
                                                {"port", value_kind::boolean}, {"crest", value_kind::binary}};
const std::vector<table_definition> tables = {{"Town", members}, {"City", {{"mayor", value_kind::text}}, "Town"}};

const std::vector<index_definition> indexes = {
    {"Town", "by_name", {{"name"}}, true},          {"Town", "by_state", {{"state", false}, {"size"}}},
    {"Town", "by_kind", {{"object_type"}}},         {"Town", "by_number", {{"object_number", false}}},
    {"Town", "by_rank", {{"rank"}, {"port"}}},      {"Town", "by_share", {{"share", false}, {"crest"}}},
    {"Town", "by_before", {{"before"}, {"share"}}}, {"City", "by_mayor", {{"mayor"}, {"rank"}}}};

constexpr std::uint8_t lion[] = {0x4C, 0x00, 0xFF};
constexpr const char16_t* long_name = u"Östliches Brunn bei der Brücke, das einen Namen für mehr als einen Block hat";

}  // namespace

plan_catalogue::plan_catalogue() {
  add_scans();
  add_operations();
  add_joins();
  add_kept_sides();
  add_aggregates();
  add_orders();
  add_errors();
}

OV_OBJ_REF plan_catalogue::insert_towns() {
  definitions_.define_tables(tables);
  for (const index_definition& each : indexes) definitions_.define_index(each);
  const catalog names(context());
  const auto insert = [&](const char* table, const std::vector<cell>& cells) {
    return database.insert(names.table(table).tag, cells);
  };
  const std::uint64_t sizes[] = {0, 1, 2};
  const std::int64_t ranks[] = {3, -3, 4};
  const std::span<const std::uint8_t> crest(lion);
  const ovcoredb::decimal share{2500000};
  const cell none;
  const OV_OBJ_REF aden = insert("Town", {u"Aden", u"Yemen", sizes[0], none, ranks[0], share, 1.5, 2.5F, true, crest});
  insert("Town", {u"Bern", u"Bern", sizes[1], aden, none, share, -0.0, none, false, crest.first(2)});
  const OV_OBJ_REF bonn = insert("Town", {u"Bonn", none, sizes[2], aden, ranks[0], none, 0.0, 2.5F, none, none});
  insert("Town", {u"Brno", u"Bern", none, bonn, ranks[1], ovcoredb::decimal{-1}, none, 0.5F, true, crest});
  insert("Town", std::vector<cell>(10));
  insert("City", {u"Utah", u"Utah", sizes[2], bonn, ranks[2], share, 1.5, 7.0F, true, crest.first(0), u"Bern"});
  insert("City", {long_name, u"Bern", sizes[1], bonn, none, none, 9.5, none, false, crest, none});
  return aden;
}

void plan_catalogue::add(const char* name, const columns& items, const child& below) { fail("", name, items, below); }

void plan_catalogue::fail(const char* error, const char* name, const columns& items, const child& below) {
  plans.push_back({name, [=] { return project(items, below()); }, error});
}

void plan_catalogue::add_computed(const char* name, const columns& computed, const char* error) {
  std::vector<assignment> assignments;
  columns items;
  for (const expression& each : computed) {
    const computation column = query_.define("c", each);
    assignments.push_back(column);
    items.push_back(column);
  }
  fail(error, name, items, [=, this] { return extend(assignments, scan(t_, "by_number")); });
}

void plan_catalogue::add_scans() {
  const table_variable t = t_;
  const table_variable city = query_.over("City", "c");
  const auto add_range = [&](const char* name, const char* index, const std::vector<scan_range>& bounds,
                             walk direction = walk::ascending, const char* error = "") {
    fail(error, name, {t, t["name"]}, [=] { return scan(t, index, bounds, direction); });
  };
  const auto binary = [](std::vector<std::uint8_t> bytes) { return lit(Binary{std::move(bytes)}); };
  const auto large = key::equal(decimal("2.5"));
  add_range("whole index", "by_name", {}, walk::descending);
  add_range("texts that begin so", "by_name", {key::begins_with(text(u"B"))}, walk::descending);
  add_range("begins with a parameter", "by_name", {key::begins_with(like_prefix(parameter(1, value_kind::text)))});
  add_range("two columns", "by_state", {key::equal(text(u"Bern")), key::at_least(lit(1U))});
  add_range("between, in another type", "by_rank", {key::both(key::above(lit(-3.5)), key::at_most(decimal("3.5")))});
  add_range("a bool", "by_rank", {key::equal(lit(3)), key::equal(lit(true))});
  add_range("no value", "by_state", {key::null(), key::any()});
  add_range("decimals and binaries", "by_share", {large, key::above(binary({}))});
  add_range("binaries that begin so", "by_share", {large, key::begins_with(binary({0x4C}))}, walk::ascending, "7020");
  add_range("below a parameter", "by_share", {key::below(parameter(2, value_kind::float64))});
  add_range("references", "by_before", {key::equal(lit(first_)), key::any()});
  add_range("computed bound", "by_number", {key::above(ovhost::add(oid(lit(first_)), lit(1)))});
  add_range("set specifiers", "by_kind", {key::equal(to(value_kind::set_specifier, text(u"City")))});
  add("derived table", {city["name"], city["mayor"], city}, [=] { return scan(city, "by_mayor"); });
  columns all;
  for (const member_definition& each : members) all.push_back(t[each.name]);
  all.push_back(t["object_number"]);
  add("every type of column", all, [=] { return scan(t, "by_number"); });
}

void plan_catalogue::add_operations() {
  const table_variable t = t_;
  const auto name = t["name"];
  const auto state = t["state"];
  const auto is_port = eq(t["port"], lit(true));
  const auto add_test = [&](const char* named, const expression& predicate) {
    add(named, {name, t}, [=] { return filter(predicate, scan(t, "by_state")); });
  };
  add_computed("comparisons", {eq(name, state), ne(t["crest"], lit(Binary{{0x4C}})), le(t["area"], t["share"]),
                               lt(t["rank"], t["size"]), gt(t["height"], t["area"]), ge(t["port"], lit(false)),
                               eq(t["before"], lit(first_)), eq(t, t["before"])});
  add_computed("arithmetic", {ovhost::add(t["rank"], t["size"]), sub(t["share"], t["rank"]),
                              mul(t["area"], t["height"]), div(t["share"], decimal("0.4")), neg(t["height"]),
                              div(t["area"], lit(0)), ovhost::add(t["rank"], parameter(2, value_kind::float64))});
  add_computed("conversions",
               {to(value_kind::boolean, t["rank"]), to(value_kind::uint64, t["size"]),
                to(value_kind::int64, t["share"]), to(value_kind::decimal, t["rank"]),
                to(value_kind::float64, t["share"]), to(value_kind::float32, t["size"]), to(value_kind::text, name)});
  add_computed("texts", {concat({name, text(u" in "), state}), like_prefix(name), like_prefix(text(u"B\\%r%")),
                         when(is_port, name, state), concat({concat({name, name}), concat({name, text(u"")})})});
  add_computed("conditionals",
               {when(is_port, t["rank"], t["share"]), when_as(value_kind::float64, is_port, t["rank"], null()),
                when_as(value_kind::reference, is_port, t, t["before"]),
                when_as(value_kind::binary, is_null(state), null(), t["crest"]), oid(t["before"])});
  add_computed("tests", {like(name, parameter(1, value_kind::text)), like(state, text(u"_ER%n")), is_a(t, "City"),
                         starts_with(name, text(u"B")), starts_with(name, state), is_null(t["before"]),
                         is_not_null(t["crest"]), is_null(parameter(3, value_kind::int64))});
  add_test("connectives", either(both(is_port, negated(eq(name, state))), exclusive(is_port, lt(t["rank"], lit(4)))));
  const auto among = [](const expression& tested, std::initializer_list<expression> list) {
    expression any = lit(false);
    for (const expression& each : list) any = either(std::move(any), eq(tested, each));
    return any;
  };
  add_test("lists", either(among(name, {text(u"Bern"), text(u"Bonn"), text(u"Brno"), null(), text(long_name)}),
                           negated(among(t["rank"], {lit(1), lit(2U), lit(3.0), decimal("4"), lit(true),
                                                     parameter(2, value_kind::float64)}))));
  add_test("type test", is_a(t, to(value_kind::set_specifier, concat({text(u"Ci"), text(u"ty")}))));
  add_test("set specifiers read", is_a(t, t["object_type"]));
  add_test("like", like(concat({name, state}), text(u"%E_n%b%")));
  add_test("filter by parameter", ge(t["size"], parameter(0, value_kind::uint64)));
  add("filter over filter", {name},
      [=] { return filter(like(name, text(u"%R%")), filter(is_port, scan(t, "by_name"))); });
  const auto generated = query_.define("g", concat({text(u"a"), parameter(1, value_kind::text)}));
  add("one row of its own", {generated}, [=] { return generate(generated); });
}

void plan_catalogue::add_joins() {
  const table_variable t = t_;
  const table_variable s = s_;
  const table_variable u = query_.over("Town", "u");
  const table_variable b = t.follow("before");
  const table_variable bb = b.follow("before");
  const table_variable sb = s.follow("before");
  const OV_OBJ_REF first = first_;
  const auto all = [=] { return scan(t, "by_name"); };
  const auto others = [=] { return filter(like(s["name"], text(u"b%")), scan(s, "by_state")); };
  const auto namesake = [=] { return scan(s, "by_state", {key::equal(t["name"]), key::above(lit(0U))}); };
  const auto of_state = [=] { return scan(s, "by_state", {key::equal(t["state"])}); };
  const columns names = {t["name"], s["name"]};
  const expression is_state = eq(t["name"], s["state"]);
  add("inner join", names, [=] { return join(all(), namesake()); });
  add("left join", {t["size"], s["name"]}, [=] { return left_join(all(), namesake()); });
  add("join of every pair", names, [=] { return join(all(), scan(s, "by_rank")); });
  add("join with a filter inside", names, [=] { return join(all(), filter(is_state, scan(s, "by_name"))); });
  add("full join", names, [=] { return full_join(is_state, all(), others()); });
  add("full join without a condition", names, [=] { return full_join(std::nullopt, all(), others()); });
  add("full join of joins", {t["rank"], s["crest"]},
      [=] { return full_join(eq(t["crest"], s["crest"]), all(), join(scan(s, "by_share"), bind(sb))); });
  add("reference followed", {b["name"]}, [=] { return filter(ne(b, lit(first)), reach(b, all())); });
  add("references followed", {t["name"], b["name"], bb["share"]}, [=] { return reach(bb, reach(b, all())); });

  const auto partners = query_.count_rows("partners");
  const auto most = query_.maximum("most", s["name"]);
  const auto twin = query_.define("twin", concat({t["name"], s["name"]}));
  const auto sorted = [=] { return order({descending(s["size"]), ascending(s["name"])}, of_state()); };
  const auto matching = [=] { return filter(eq(u["name"], t["name"]), scan(u, "by_name")); };
  add("groups inside", {t["name"], partners, most}, [=] {
    return left_join(all(), group({partners, most}, {}, of_state()));
  });
  add("first of each", names, [=] { return left_join(all(), limit(lit(1), std::nullopt, sorted())); });
  add("limit by the outer row", names,
      [=] { return join(filter(is_not_null(t["size"]), all()), limit(t["size"], lit(1), scan(s, "by_name"))); });
  add("union inside", names,
      [=] { return join(all(), unite(of_state(), scan(s, "by_rank", {key::equal(t["rank"])}))); });
  add("reference bound inside", {t["name"], b["name"]}, [=] { return join(all(), bind(b)); });
  add("text made inside", {twin, t["size"]}, [=] { return join(join(all(), of_state()), generate(twin)); });
  add("joins inside joins", {t["name"], s["name"], u["name"]},
      [=] { return left_join(all(), join(of_state(), scan(u, "by_before", {key::equal(s)}))); });
  add("full join inside", names,
      [=] { return join(all(), full_join(eq(s["rank"], u["rank"]), scan(s, "by_state"), matching())); });
}

// Inner sides that are kept and hashed. Some rows have NULL keys.
void plan_catalogue::add_kept_sides() {
  const table_variable t = t_;
  const table_variable s = s_;
  const table_variable u = query_.over("Town", "u");
  const columns names = {t["name"], s["name"]};
  const auto all = [=] { return scan(t, "by_name"); };
  const auto among = [=](const table_variable& of, const expression& condition) {
    return filter(condition, scan(of, "by_rank"));
  };
  const auto add_join = [&](const char* name, const expression& condition, const char* error = "") {
    fail(error, name, names, [=] { return join(all(), among(s, condition)); });
  };
  const expression same_state = eq(s["state"], t["state"]);
  add_join("kept: several keys", both(same_state, both(eq(t["port"], s["port"]), ne(s["name"], t["name"]))));
  add_join("kept: numbers of two types",
           both(eq(t["rank"], ovhost::add(s["height"], lit(0.5))), is_not_null(t["size"])));
  add_join("kept: a computed key", eq(concat({s["name"], t["name"]}), text(u"BernBern")));
  add_join("kept: texts made of each side",
           both(eq(concat({s["state"], text(u"/")}), concat({t["state"], text(u"/")})), like(t["name"], s["name"])));
  add_join("kept: keys of another kind", eq(s["name"], t["rank"]), "7020");
  add_join("kept: an error after NULL", both(same_state, gt(div(s["rank"], sub(t["rank"], lit(4))), lit(0))), "7041");
  add("kept: first partner", {t["size"], s["crest"]},
      [=] { return left_join(all(), limit(lit(1), std::nullopt, among(s, eq(s["crest"], t["crest"])))); });
  const auto state = query_.define("state", s["state"]);
  const auto partners = query_.count_rows("partners");
  add("kept: groups", {t["name"], partners},
      [=] { return join(all(), filter(eq(state, t["state"]), group({partners}, {state}, scan(s, "by_state")))); });
  add("kept: the outermost row's", {t["name"], u["name"]},
      [=] { return join(all(), join(scan(s, "by_name"), among(u, eq(u["before"], t["before"])))); });
  add("kept: a full join", {s["name"], u["area"]}, [=] {
    const auto both_sides = [=] {
      return full_join(eq(s["share"], u["area"]), scan(s, "by_name"), scan(u, "by_rank"));
    };
    return join(all(), filter(eq(s["size"], t["size"]), both_sides()));
  });
}

void plan_catalogue::add_aggregates() {
  const table_variable t = t_;
  const auto all = [=] { return scan(t, "by_number"); };
  const auto state = query_.define("state", t["state"]);
  // Splits them over several plans: what the loops take grows with the square of the size of one.
  const std::pair<const char*, const char*> pairs_of_properties[] = {
      {"name", "state"},  {"size", "before"}, {"rank", "share"},
      {"area", "height"}, {"port", "crest"},  {"object_number", "object_type"}};
  for (const auto& [first, second] : pairs_of_properties) {
    std::vector<aggregate> every;
    columns results = {state};
    const auto keep = [&](const aggregation_column& column) {
      every.push_back(column);
      results.push_back(column);
    };
    for (const expression& each : {t[first], t[second]}) {
      const value_kind kind = kind_of(each);
      keep(query_.count("n", each));
      keep(query_.count_distinct("d", each));
      if (kind == value_kind::set_specifier) continue;
      keep(query_.maximum("x", each));
      keep(query_.minimum("m", each));
      if (kind < value_kind::uint64 || kind > value_kind::float32) continue;
      keep(query_.sum("s", each));
      keep(query_.average("a", each));
    }
    keep(query_.count_distinct_rows("r", {t[first], t[second]}));
    keep(query_.count_rows("c"));
    add("aggregates by text", results, [=] { return group(every, {state}, all()); });
    results.erase(results.begin());
    add("aggregates of nothing", results, [=] { return group(every, {}, filter(lit(false), all())); });
  }
  std::vector<assignment> keys;
  columns key_columns;
  for (const char* property : {"port", "crest", "area", "before", "object_type"}) {
    const auto key = query_.define("k", t[property]);
    keys.push_back(key);
    key_columns.push_back(key);
  }
  key_columns.pop_back();  // the last is of no type that a result may have
  add("many keys", key_columns, [=] { return group({}, keys, all()); });
  const auto count = query_.count_rows("count");
  add("count of rows", {count}, [=] { return group({count}, {}, all()); });
  const auto length = query_.define("length", mul(t["size"], lit(2)));
  const auto total = query_.sum("total", ovhost::add(length, t["rank"]));
  const auto again = query_.define("again", length);
  add("groups of computed columns", {again, total}, [=] { return group({total}, {again}, extend({length}, all())); });
  const auto most = query_.maximum("most", total);
  add("groups of groups", {most}, [=] { return group({most}, {}, group({total}, {again}, extend({length}, all()))); });
  const auto pairs = query_.count_rows("pairs");
  const auto of = query_.define("of", s_["state"]);
  const auto partners = [=, this] { return scan(s_, "by_state", {key::equal(t["state"])}); };
  add("groups of a join", {of, pairs}, [=] { return group({pairs}, {of}, left_join(all(), partners())); });
}

void plan_catalogue::add_orders() {
  const table_variable t = t_;
  const auto all = [=] { return scan(t, "by_name"); };
  const auto add_order = [&](const char* name, const std::vector<order_key>& keys) {
    add(name, {t["name"]}, [=] { return order(keys, all()); });
  };
  add_order("order by texts", {descending(t["state"]), ascending(t["name"])});
  add_order("order by numbers", {ascending(t["size"]), descending(t["rank"]), ascending(t["share"])});
  add_order("order by others", {ascending(t["port"]), descending(t["crest"]), ascending(t["before"]), ascending(t)});
  add_order("order by floats", {descending(t["area"]), ascending(neg(t["height"])), ascending(t)});
  add_order("order by computed texts", {descending(concat({t["state"], text(u"/"), t["name"]})), ascending(t)});
  const auto both = [=] { return unite(all(), scan(t, "by_state")); };
  const auto label = query_.define("label", concat({t["name"], t["state"]}));
  const auto other = label.with(like_prefix(text(u"every%one")));
  add("order by a column made below", {label, t["rank"]}, [=] {
    return order({ascending(label), ascending(t)}, extend({label}, all()));
  });
  add("union", {t["name"]}, both);
  add("union of computed columns", {label}, [=] {
    return unite(project({label}, extend({label}, all())),
                 unite(project({label}, extend({other}, all())), generate(other)));
  });
  add("limit", {t["name"]}, [=] { return limit(lit(6U), lit(1U), both()); });
  add("limit by parameters", {t["name"]},
      [=] { return limit(parameter(0, value_kind::uint64), parameter(2, value_kind::float64), both()); });
  add("offset into a join", {t["name"], s_["name"]},
      [=, this] { return limit(std::nullopt, lit(40), join(all(), scan(s_, "by_name"))); });
  add("limit of an order", {t["name"]}, [=] { return limit(lit(3), lit(2), order({descending(t["name"])}, all())); });
}

// Adds statements whose planning or run ends with an error of their own.
void plan_catalogue::add_errors() {
  const table_variable t = t_;
  const auto all = [=] { return scan(t, "by_number"); };
  const auto mixed = query_.define("mixed", t["rank"]);
  const auto failing = [&](const char* name, const expression& predicate, const char* error) {
    fail(error, name, {t}, [=] { return filter(predicate, all()); });
  };
  const char* const unfinished_escape = "7042 Escape character must be followed by a special character.";
  failing("no predicate", t["rank"], "7020");
  failing("type error", like(t["name"], t["rank"]), "7020");
  failing("bad escape", like(concat({t["name"], text(u"")}), text(u"a\\b")), unfinished_escape);
  failing("parameter that is not there", eq(t["rank"], parameter(9, value_kind::int64)), "invalid vector<T> subscript");
  add_computed("division by zero", {t["name"], div(t["size"], sub(t["rank"], lit(4)))}, "7041");
  add_computed("no such conversion", {to(value_kind::decimal, t["area"])}, "1027");
  const auto total = query_.sum("total", ovhost::add(t["size"], lit(std::int64_t{1} << 62)));
  const auto texts = query_.sum("texts", t["state"]);
  const auto key = query_.define("key", t["name"]);
  const auto both = [=] {
    return unite(project({mixed}, extend({mixed}, all())), project({mixed}, extend({mixed.with(t["share"])}, all())));
  };
  const char* const not_planned = "7022 Not implemented error";
  fail("7041", "overflow in a group", {total}, [=] { return group({total}, {}, all()); });
  fail("7020", "no sum of texts", {key}, [=] { return group({texts}, {key}, all()); });
  fail("incompatible types", "order of different types", {mixed}, [=] { return order({ascending(mixed)}, both()); });
  fail("7020", "limit that is NULL", {t}, [=] { return limit(parameter(3, value_kind::int64), std::nullopt, all()); });
  fail("7007 Internal error: expression is not a variable", "expression for a column", {neg(t["rank"])}, all);
  fail("7022 Unsupported return type", "column of no type", {t["object_type"]}, all);
  fail(not_planned, "union of unlike inputs", {t}, [=, this] { return unite(all(), scan(s_, "by_name")); });
  plans.push_back({"no projection", [=] { return filter(lit(true), all()); }, not_planned});
}

}  // namespace tests
