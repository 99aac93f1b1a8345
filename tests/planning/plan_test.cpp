#include "ov_sql_executor/planning/plan.hpp"

#include "core_shim/core_shim.hpp"
#include "host_test.hpp"
#include "ov_sql_executor/planning/result_columns.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

using namespace physical_queryplan::QueryPlan;  // NOLINT: the alternatives are what is tested
using namespace physical_queryplan;             // NOLINT
using ovhost::extend, ovhost::group, ovhost::lit, ovhost::plan, ovhost::project, ovhost::value_kind;

const char* const no_plan = "7022 Not implemented error";
const char* const no_column = "7007 Internal error: expression is not a variable";
const char* const no_scope = "7007 Internal error: column is not in scope";

// Two towns of the same size.
class Planning : public HostTest {
 protected:
  Planning()
      : HostTest({{"Town", {{"name", value_kind::text}, {"size", value_kind::uint64}}}},
                 {{"Town", "by_size", {{"size"}}}}) {
    for (const std::u16string_view name : {u"Aden", u"Bern"}) insert("Town", {name, std::uint64_t{5}});
  }

  plan all(const ovhost::table_variable& town) { return ovhost::scan(town, "by_size"); }
  plan where_size(expression bound) { return ovhost::scan(s, "by_size", {ovhost::key::equal(std::move(bound))}); }
  plan only(expression item) { return project({std::move(item)}, all(t)); }
  plan where(expression predicate) { return project({t}, ovhost::filter(std::move(predicate), all(t))); }
  // Returns "ok" or the error.
  static std::string planned(plan of) {
    return outcome([&] { static_cast<void>(physical_to_exec::Plan(std::move(of))); });
  }
  // Checks several plans that end alike.
  template <class... Plans>
  static void expect_planned(const char* result, Plans... plans) {
    for (int number = 1; const std::string& each : {planned(std::move(plans))...}) {
      EXPECT_EQ(each, result) << "plan " << number++;
    }
  }

  ovhost::query names;
  ovhost::table_variable t = names.over("Town", "t");
  ovhost::table_variable s = names.over("Town", "s");
  ovhost::computation c = names.define("c", lit(1));
};

TEST_F(Planning, refuses_other_roots_other_items_and_columns_that_are_not_in_scope) {
  expect_planned(no_plan, all(t), ovhost::filter(lit(true), only(t)), ovhost::unite(only(t), only(t)),
                 project({t}, ovhost::unite(all(t), all(s))));
  expect_planned(no_plan, Projection{{t}, nullptr},
                 project({t}, LeftJoin{nullptr, std::make_unique<PredicateVariant>(all(t))}),
                 project({t}, FullJoin{std::nullopt, std::make_unique<PredicateVariant>(all(t)), nullptr}));
  expect_planned(no_column, only(lit(1)), only(ovhost::parameter(0, ovhost::value_kind::uint64)),
                 only(ovhost::eq(t["size"], lit(1))), only(ovhost::oid(t)), project({t, t["name"], lit(1)}, all(t)),
                 ovhost::filter(lit(true), only(lit(1))));  // errors below the root come first
  expect_planned(no_scope, only(s), only(s["name"]), only(c), project({t["name"]}, only(t["size"])),
                 project({s}, where_size(s["size"])), project({s}, ovhost::join(where_size(t["size"]), all(t))),
                 project({s}, ovhost::full_join(std::nullopt, all(t), where_size(t["size"]))));
  expect_planned("ok", only(t), project({t}, ovhost::unite(all(t), only(t))),
                 project({s}, ovhost::join(all(t), where_size(t["size"]))),
                 project({s}, ovhost::left_join(all(t), where_size(t["size"]))));
}

TEST_F(Planning, a_projection_has_the_columns_that_it_names) {
  EXPECT_EQ(rows_of_plan(project({c, t["size"]}, ovhost::extend({c}, only(t["size"])))), "(i1 u5)(i1 u5)");
  EXPECT_EQ(rows_of_plan(project({t, t}, all(t))), rows_of_plan(project({t, t}, only(t))));
  EXPECT_EQ(rows_of_plan(project({}, all(t))), "()()");
}

TEST_F(Planning, columns_that_are_there_are_not_read_again_and_the_first_of_equal_ones_wins) {
  const ovhost::statement once(project({t["size"], t["size"]}, only(t["size"])));
  for (const auto& [call, found] : {std::pair(2, "4711"), {3, "(u5 u5)(u5 u5)"}}) {  // once for each of two objects
    core_shim::fail_call("orv_context_get_ulong", static_cast<std::uint64_t>(call), 4711);
    EXPECT_EQ(tests::rows_of(once, reading.context()), found);
  }
  core_shim::reset();
  EXPECT_EQ(rows_of_plan(project({c}, ovhost::extend({c, c.with(lit(2))}, only(t["size"])))), "(i1)(i1)");
  EXPECT_EQ(rows_of_plan(project({c}, ovhost::extend({c.with(lit(2))}, ovhost::extend({c}, all(t))))), "(i1)(i1)");
  const ovhost::computation n = names.define("n", t["name"]);
  EXPECT_EQ(rows_of_plan(project({t["name"], n}, ovhost::join(all(t), ovhost::extend({n}, all(t))))),
            "('Aden' 'Aden')('Aden' 'Aden')('Bern' 'Bern')('Bern' 'Bern')")
      << "an enclosing row's column hides the own one";
}

TEST_F(Planning, valueless_variants_are_refused_wherever_they_stand) {
  expression no_expression = Equality{};
  make_valueless<Equality>(no_expression);
  literal no_literal = SetSpecifier{};
  make_valueless<SetSpecifier>(no_literal);
  column_ref no_name = t.variable();
  make_valueless<variable>(no_name);
  plan nothing = all(t);
  make_valueless<Scan>(nothing);
  expect_planned(bad_variant, only(no_expression), where(ovhost::eq(lit(1), no_expression)),
                 where(expression(no_literal)), project({t}, where_size(no_expression)),
                 project({c}, ovhost::generate({lit(1), no_name})),
                 project({c}, ovhost::extend({{lit(1), no_name}, c}, all(t))), project({}, std::move(nothing)));
  // Columns are looked at after all expressions.
  const aggregation no_argument{{}, {}, computed<std::int64_t>{{1, 2, 3, 4}}};
  expect_planned(no_scope, project({c}, extend({{lit(1), no_name}, c.with(s)}, all(t))),
                 project({c}, group({}, {{lit(1), no_name}, c.with(s)}, all(t))));
  expect_planned(bad_subscript, project({c}, group({Maximum{no_argument}}, {{lit(1), no_name}}, all(t))));
}

TEST_F(Planning, the_plan_is_gone_when_the_call_returns_or_fails) {
  for (const expression& item : {expression(t), lit(1)}) {
    const auto cache = std::make_shared<meta_data::Table::TableCache>();
    variable watched = t.variable();
    watched.cache = cache;
    const OV_OBJ_REF index = names.names().index(t.table(), "by_size").object;
    planned(project({item}, Scan{std::move(watched), index, {}, true}));
    EXPECT_EQ(cache.use_count(), 1);
  }
}

// A city has a property "p" and its number of every type but set specifiers, and of its own a country.
ovhost::table_definition city_table() {
  ovhost::table_definition table{"City", {{"country", ovhost::refers_to{"Country"}}}};
  for (std::size_t number = 0; number <= 7; ++number)
    table.members.push_back({"p" + std::to_string(number), value_kind{number}});
  return table;
}

class ResultColumns : public HostTest {
 protected:
  ResultColumns()
      : HostTest({city_table(), {"Country", {{"name", value_kind::text}}}}, {{"City", "by_country", {{"country"}}}}) {}

  plan all() { return ovhost::scan(city, "by_country"); }

  // The types of a root projection's columns by index, a reference with the name that it has.
  static std::string types(const std::vector<expression>& items, plan child) {
    return outcome([&] {
      std::string words;
      const QueryPlan::Projection root{items, std::make_unique<plan>(std::move(child))};
      for (const auto& type : physical_to_exec::result_columns(root)) {
        words += (words.empty() ? "" : " ") + std::to_string(type.index());
        const auto* reference = std::get_if<physical_to_exec::RefInfo>(&type);
        if (reference != nullptr) words += ":" + std::string(reference->name.begin(), reference->name.end());
      }
      return words;
    });
  }

  ovhost::query names;
  ovhost::table_variable city = names.over("City", "city");
};

const char* const refused = "7022 Unsupported return type";

TEST_F(ResultColumns, name_the_type_of_each_item) {
  std::vector<expression> items = {city["country"], city};
  for (const char* property : {"p0", "p1", "p2", "p3", "p4", "p5", "p6", "p7"}) items.push_back(city[property]);
  EXPECT_EQ(types(items, all()), "9:Country 9:City 0 1 2 3 4 5 6 7");
  const auto computed_as = [this](auto... of) {
    return types({expression(computed<decltype(of)>{{1, 2, 3, 4}})...}, all());
  };
  EXPECT_EQ(computed_as(true, db_string::tt_string(), std::uint64_t{}, std::int64_t{}, Decimal{}, 0.0, 0.0F, Binary{}),
            "0 1 2 3 4 5 6 7");
  EXPECT_EQ(computed_as(SetSpecifier{}), refused);
  EXPECT_EQ(computed_as(NullValue{}), refused);
  EXPECT_EQ(types({city, city["object_type"], city}, all()), refused);
  const std::vector<expression> two = {city, items[0]};
  plan below = all();
  core_shim::fail_call("orv_context_get_string", 1, ORV_NO_VALUE);
  EXPECT_EQ(types(two, std::move(below)), "9: 9:Country") << "a table without a name";
  make_valueless<variable>(items[1]);
  EXPECT_EQ(types(items, all()), bad_variant);
}

TEST_F(ResultColumns, trace_a_computed_reference_to_its_definition) {
  const auto country = names.define("r", city["country"]);
  const auto whole = names.define("w", city);
  const auto other = names.define("o", expression(country));
  const auto operation = names.define("x", ovhost::when_as(value_kind::reference, lit(true), country, country));
  const auto largest = names.maximum("m", expression(country));
  EXPECT_EQ(types({country, whole}, ovhost::filter(lit(true), extend({country, whole}, all()))), "9:Country 9:City");
  EXPECT_EQ(types({other}, extend({other}, extend({whole, country}, all()))), "9:Country");
  EXPECT_EQ(types({country}, group({}, {country}, all())), "9:Country");
  EXPECT_EQ(types({largest}, group({largest}, {}, extend({country}, all()))), "9:Country");
  EXPECT_EQ(types({whole}, ovhost::join(extend({whole.with(city["country"])}, all()), ovhost::generate(whole))),
            "9:Country")
      << "left before right";
  EXPECT_EQ(types({whole}, ovhost::join(ovhost::generate(whole), extend({whole.with(city["country"])}, all()))),
            "9:Country")
      << "an extension before anything else";
  const auto passed_on = country.with(expression(country));
  EXPECT_EQ(types({country}, group({}, {passed_on}, extend({passed_on}, extend({country}, all())))), "9:Country");
  EXPECT_EQ(types({operation}, extend({country, operation}, all())), "9:") << "an operation's reference has no name";
  EXPECT_EQ(types({country}, extend({country.with(ovhost::eq(lit(1), lit(1)))}, all())), "0") << "a bool after all";
  EXPECT_EQ(types({other}, extend({other.with(other)}, all())), refused) << "defined by itself";
  EXPECT_EQ(types({other}, extend({other, country.with(other)}, all())), refused) << "in a circle";
  EXPECT_EQ(types({other}, extend({whole}, all())), refused);
}

}  // namespace
}  // namespace tests
