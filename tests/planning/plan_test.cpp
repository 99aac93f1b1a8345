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
using ovhost::table_variable;

// Two towns of the same size.
class Planning : public HostTest {
 protected:
  Planning()
      : HostTest({{"Town", {{"name", ovhost::value_kind::text}, {"size", ovhost::value_kind::uint64}}}},
                 {{"Town", "by_size", {{"size"}}}}) {
    for (const std::u16string_view name : {u"Aden", u"Bern"}) insert("Town", {name, std::uint64_t{5}});
  }

  plan all(const table_variable& town) { return ovhost::scan(town, "by_size"); }
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
  table_variable t = names.over("Town", "t");
  table_variable s = names.over("Town", "s");
};

const char* const no_plan = "7022 Not implemented error";
const char* const no_column = "7007 Internal error: expression is not a variable";
const char* const no_scope = "7007 Internal error: column is not in scope";
const char* const overflow = "bad numeric conversion: positive overflow";

template <class Operation>
expression operation_of(std::vector<expression> operands) {
  Operation made;
  made.operands = std::move(operands);
  return made;
}

TEST_F(Planning, the_root_is_a_projection_and_errors_below_it_come_first) {
  expect_planned(no_plan, all(t), ovhost::filter(lit(true), only(t)), ovhost::join(only(t), all(s)),
                 ovhost::unite(only(t), only(t)));
  EXPECT_EQ(planned(ovhost::filter(lit(true), only(lit(1)))), no_column);
  EXPECT_EQ(planned(project({t}, ovhost::unite(all(t), all(s)))), no_plan) << "other variables, other columns";
  EXPECT_EQ(planned(project({t}, ovhost::unite(all(t), only(t)))), "ok");
}

TEST_F(Planning, a_projection_that_repeats_its_input_is_its_input) {
  const auto root_of = [](plan tested) {
    return std::move(std::get<0>(physical_to_exec::Plan(std::move(tested))).root);
  };
  const ovhost::computation c = names.define("c", lit(1));
  EXPECT_TRUE(dynamic_cast<const ov::sql_executor::scan*>(root_of(only(t)).get()));
  EXPECT_TRUE(dynamic_cast<const generative_assignment*>(root_of(project({c}, ovhost::generate(c))).get()));
  EXPECT_TRUE(dynamic_cast<const projection*>(root_of(project({t, t}, all(t))).get()));
  EXPECT_TRUE(dynamic_cast<const projection*>(root_of(project({}, all(t))).get()));
  EXPECT_TRUE(dynamic_cast<const projection*>(root_of(only(t["size"])).get()));
  EXPECT_EQ(rows_of_plan(project({t["size"], c}, ovhost::extend({c}, only(t["size"])))), "(u5 i1)(u5 i1)");
  EXPECT_EQ(rows_of_plan(project({c, t["size"]}, ovhost::extend({c}, only(t["size"])))), "(i1 u5)(i1 u5)");
  EXPECT_EQ(rows_of_plan(project({}, all(t))), "()()");
}

TEST_F(Planning, only_columns_can_be_projected) {
  expect_planned(no_column, only(lit(1)), only(ovhost::parameter(0, ovhost::value_kind::int64)),
                 only(ovhost::eq(t["size"], lit(1))), only(ovhost::oid(t)), project({t, t["name"], lit(1)}, all(t)));
}

TEST_F(Planning, every_literal_has_its_slot_but_for_references) {
  EXPECT_EQ(planned(only(t)), "ok");
  EXPECT_EQ(planned(where(ovhost::eq(ovhost::eq(lit(1), lit(1)), ovhost::eq(lit(2.5), ovhost::null())))),
            "ok i1 i1 d2.5 NULL");
  EXPECT_EQ(planned(where(ovhost::eq(t, lit(OV_OBJ_REF{7, 0})))), "ok");
  EXPECT_EQ(planned(where(ovhost::eq(lit(SetSpecifier{u"a"}), lit(Binary{{1}})))), "ok set'a' x'01'");
  EXPECT_EQ(planned(where(ovhost::eq(t["size"], ovhost::parameter(3, ovhost::value_kind::uint64)))), "ok");
  // Surplus operands are not looked at.
  EXPECT_EQ(planned(where(operation_of<Equality>({lit(1), lit(2), lit(3), operation_of<Equality>({})}))), "ok i1 i2");
}

TEST_F(Planning, positions_end_at_32767) {
  const auto with_literals = [this](std::int64_t count) {
    scan_range range;
    for (std::int64_t n = 0; n < count; ++n) range.equal_to.insert({lit(n), true});
    EXPECT_EQ(range.equal_to.size(), static_cast<std::size_t>(count)) << "bounds that differ are not merged";
    return project({t}, ovhost::scan(t, "by_size", {std::move(range)}));
  };
  EXPECT_EQ(std::get<0>(physical_to_exec::Plan(with_literals(32768))).constants.size(), 32768U);
  EXPECT_EQ(planned(with_literals(32769)), overflow);
  const auto with_parameter = [this](std::uint64_t number) {
    return where(ovhost::eq(t["size"], ovhost::parameter(number, ovhost::value_kind::uint64)));
  };
  EXPECT_EQ(planned(with_parameter(32767)), "ok");
  expect_planned(overflow, with_parameter(32768), with_parameter(~std::uint64_t{0}));
  // A row of as many columns, of which the last is read.
  const auto with_columns = [this](std::size_t count) {
    std::vector<expression> many(count, t["size"]);
    return project({t["name"]}, project({t["name"]}, [&] {
                     many.push_back(t["name"]);
                     return project(std::move(many), all(t));
                   }()));
  };
  EXPECT_EQ(planned(with_columns(32767)), "ok");
  EXPECT_EQ(planned(with_columns(32768)), overflow);
}

TEST_F(Planning, missing_operands_are_reported) {
  expect_planned(bad_subscript, where(operation_of<Equality>({})), where(operation_of<Less>({lit(1)})),
                 where(operation_of<ObjectNumber>({})),
                 where(operation_of<AtLeast>({lit(1), operation_of<AtMost>({lit(2)})})));
}

TEST_F(Planning, columns_are_looked_for_where_they_are_in_scope) {
  const ovhost::computation c = names.define("c", lit(1));
  expect_planned(no_scope, only(s), only(s["name"]), only(c));
  const auto inner = [this] { return ovhost::scan(s, "by_size", {ovhost::key::equal(t["size"])}); };
  EXPECT_EQ(planned(project({s}, ovhost::join(all(t), inner()))), "ok") << "the inner side sees the outer row";
  EXPECT_EQ(planned(project({s}, ovhost::left_join(all(t), inner()))), "ok");
  EXPECT_EQ(planned(project({s}, ovhost::join(inner(), all(t)))), no_scope) << "not the other way round";
  EXPECT_EQ(planned(project({s}, ovhost::full_join(std::nullopt, all(t), inner()))), no_scope);
  EXPECT_EQ(planned(project({t["name"]}, only(t["size"]))), no_scope) << "the variable is gone";
  EXPECT_EQ(planned(project({s}, ovhost::scan(s, "by_size", {ovhost::key::equal(s["size"])}))), no_scope)
      << "a scan has no input row";
}

TEST_F(Planning, a_property_that_was_produced_below_is_not_read_again) {
  core_shim::reset();
  EXPECT_EQ(rows_of_plan(project({t["size"]}, ovhost::filter(ovhost::eq(t["size"], lit(5)), only(t["size"])))),
            "(u5)(u5)");
  const ovhost::statement once(project({t["size"], t["size"]}, only(t["size"])));
  core_shim::reset();
  once.rows(reading.context());
  EXPECT_EQ(core_shim::calls("orv_context_get_ulong"), 2U) << "once for each of two objects";
}

TEST_F(Planning, the_first_of_equal_columns_wins) {
  const ovhost::computation c = names.define("c", lit(1));
  EXPECT_EQ(rows_of_plan(project({c}, ovhost::extend({c, c.with(lit(2))}, only(t["size"])))), "(i1)(i1)");
  EXPECT_EQ(rows_of_plan(project({c}, ovhost::extend({c.with(lit(2))}, ovhost::extend({c}, all(t))))), "(i1)(i1)");
}

TEST_F(Planning, parameters_are_read_by_number_and_must_be_there) {
  const auto bound = [this] { return where(ovhost::eq(t["name"], ovhost::parameter(1, ovhost::value_kind::text))); };
  EXPECT_EQ(rows_of_plan(bound(), {null(), null()}), "");
  EXPECT_EQ(rows_of_plan(bound(), {null()}), bad_subscript);
}

TEST_F(Planning, valueless_variants_are_refused_wherever_they_stand) {
  expression no_expression = operation_of<Equality>({});
  make_valueless<Equality>(no_expression);
  literal no_literal = SetSpecifier{};
  make_valueless<SetSpecifier>(no_literal);
  column_ref no_name = t.variable();
  make_valueless<variable>(no_name);
  plan nothing = all(t);
  make_valueless<Scan>(nothing);
  const ovhost::computation c = names.define("c", lit(1));
  expect_planned(bad_variant, only(no_expression), where(ovhost::eq(lit(1), no_expression)),
                 where(expression(no_literal)),
                 project({t}, ovhost::scan(t, "by_size", {ovhost::key::equal(no_expression)})),
                 project({c}, ovhost::generate({lit(1), no_name})),
                 project({c}, ovhost::extend({{lit(1), no_name}, c}, all(t))), project({}, std::move(nothing)));
}

TEST_F(Planning, the_plan_is_gone_when_the_call_returns) {
  const auto cache = std::make_shared<meta_data::Table::TableCache>();
  const auto uses_after = [&](expression item) {
    variable watched = t.variable();
    watched.cache = cache;
    const OV_OBJ_REF index = names.names().index(t.table(), "by_size").object;
    plan tested = project({std::move(item)}, Scan{std::move(watched), index, {}, true});
    EXPECT_EQ(cache.use_count(), 2);
    planned(std::move(tested));
    return cache.use_count();
  };
  EXPECT_EQ(uses_after(t), 1);
  EXPECT_EQ(uses_after(lit(1)), 1) << "when planning fails, too";
}

}  // namespace
}  // namespace tests
