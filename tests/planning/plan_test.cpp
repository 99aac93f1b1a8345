#include "ov_sql_executor/planning/plan.hpp"

#include "core_shim/core_shim.hpp"
#include "host_test.hpp"
#include "ov_sql_executor/execution/generative_assignment.hpp"
#include "ov_sql_executor/execution/projection.hpp"
#include "ov_sql_executor/execution/scan.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

using namespace physical_queryplan::QueryPlan;  // NOLINT: the alternatives are what is tested
using namespace physical_queryplan;             // NOLINT
using ovhost::lit;
using ovhost::plan;
using ovhost::project;

const char* const no_plan = "7022 Not implemented error";
const char* const no_column = "7007 Internal error: expression is not a variable";
const char* const no_scope = "7007 Internal error: column is not in scope";

// Two towns of the same size.
class Planning : public HostTest {
 protected:
  Planning()
      : HostTest({{"Town", {{"name", ovhost::value_kind::text}, {"size", ovhost::value_kind::uint64}}}},
                 {{"Town", "by_size", {{"size"}}}}) {
    for (const std::u16string_view name : {u"Aden", u"Bern"}) insert("Town", {name, std::uint64_t{5}});
  }

  plan all(const ovhost::table_variable& town) { return ovhost::scan(town, "by_size"); }
  plan where_size(expression bound) { return ovhost::scan(s, "by_size", {ovhost::key::equal(std::move(bound))}); }
  plan only(expression item) { return project({std::move(item)}, all(t)); }
  plan where(expression predicate) { return project({t}, ovhost::filter(std::move(predicate), all(t))); }
  // Several plans that end alike.
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

TEST_F(Planning, a_projection_that_repeats_its_input_is_its_input) {
  const auto root_of = [](plan tested) {
    return std::move(std::get<0>(physical_to_exec::Plan(std::move(tested))).root);
  };
  EXPECT_TRUE(dynamic_cast<const ov::sql_executor::scan*>(root_of(only(t)).get()));
  EXPECT_TRUE(dynamic_cast<const generative_assignment*>(root_of(project({c}, ovhost::generate(c))).get()));
  EXPECT_TRUE(dynamic_cast<const projection*>(root_of(project({t, t}, all(t))).get()));
  EXPECT_EQ(rows_of_plan(project({c, t["size"]}, ovhost::extend({c}, only(t["size"])))), "(i1 u5)(i1 u5)");
  EXPECT_EQ(rows_of_plan(project({}, all(t))), "()()");
}

TEST_F(Planning, positions_end_at_32767) {
  // A row of as many columns, of which the last is read.
  const auto with_columns = [this](std::size_t count) {
    std::vector<expression> many(count, t["size"]);
    many.push_back(t["name"]);
    return project({t["name"]}, project({t["name"]}, project(std::move(many), all(t))));
  };
  expect_planned("ok", with_columns(32767));
  expect_planned("bad numeric conversion: positive overflow", with_columns(32768));
}

TEST_F(Planning, columns_that_are_there_are_not_read_again_and_the_first_of_equal_ones_wins) {
  const ovhost::statement once(project({t["size"], t["size"]}, only(t["size"])));
  core_shim::reset();
  EXPECT_EQ(tests::rows_of(once, reading.context()), "(u5 u5)(u5 u5)");
  EXPECT_EQ(core_shim::calls("orv_context_get_ulong"), 2U) << "once for each of two objects";
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

}  // namespace
}  // namespace tests
