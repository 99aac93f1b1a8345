// Plans over a core that fails, and a host that walks away.
#include <functional>
#include <optional>

#include "core_shim/core_shim.hpp"
#include "host_test.hpp"

namespace tests::failing_core {
namespace {

using ovhost::ascending, ovhost::bind, ovhost::concat, ovhost::descending, ovhost::eq, ovhost::expression,
    ovhost::extend;
using ovhost::filter, ovhost::full_join, ovhost::generate, ovhost::group, ovhost::is_a, ovhost::join, ovhost::left_join;
using ovhost::like, ovhost::limit, ovhost::lit, ovhost::order, ovhost::plan, ovhost::project, ovhost::query;
using ovhost::reach, ovhost::scan, ovhost::statement, ovhost::table_variable, ovhost::text, ovhost::unite;
using ovhost::value_kind;
namespace key = ovhost::key;

// Towns, some of which are called like their state, each with a reference to the town before.
class FailingCore : public HostTest {
 protected:
  FailingCore()
      : HostTest({{"Town",
                   {{"name", value_kind::text},
                    {"state", value_kind::text},
                    {"size", value_kind::uint64},
                    {"before", ovhost::refers_to{"Town"}}}}},
                 {{"Town", "by_name", {{"name"}}},
                  {"Town", "by_state", {{"state", false}, {"size"}}},
                  {"Town", "by_kind", {{"object_type"}}}}) {
    const std::u16string_view listed[][2] = {
        {u"Aden", u"Yemen"}, {u"Bern", u"Bern"}, {u"Bonn", u""}, {u"Brno", u"Bern"}, {u"Utah", u"Utah"}};
    ovcoredb::cell before;
    for (std::uint64_t size = 0; size < std::size(listed); ++size) {
      before = insert("Town", {listed[size][0], listed[size][1], size, before});
    }
    last = std::get<OV_OBJ_REF>(before);
    add_plans();
    add_joins();
  }
  ~FailingCore() override {
    EXPECT_EQ(core_shim::open_iterators(), 0U);
    EXPECT_EQ(core_shim::wrong_frees(), 0U);
  }

  // A plan of these columns over a child.
  void add(const char* name, const std::vector<expression>& columns, const std::function<plan()>& child) {
    plans.emplace_back(name, [=] { return project(columns, child()); });
  }

  void add_plans() {
    const auto towns = [t = t](const char* index = "by_name") { return scan(t, index); };
    const auto state = q.define("state", t["state"]);
    const auto label = q.define("label", concat({t["name"], t["state"]}));
    const auto count = q.count_rows("n");
    const auto greatest = q.maximum("m", t["name"]);
    const auto kinds = q.count_distinct("k", t["state"]);
    const expression is_namesake = eq(t["name"], t["state"]);  // two texts that the core lends for the same row
    const expression has_r = like(t["name"], text(u"%R%"));
    const expression is_before_last = eq(b, lit(OV_OBJ_REF{last.object_number - 1, 0}));  // the core completes it
    const std::vector<ovhost::scan_range> from_b = {key::begins_with(text(u"B"))};
    add("filter", {t["name"]}, [=] { return filter(is_namesake, towns()); });
    add("like", {t["size"]}, [=] { return filter(has_r, towns()); });
    add("range", {t["size"], t["before"]}, [=, this] { return scan(t, "by_name", from_b, ovhost::walk::descending); });
    add("extension", {label, t}, [=] { return extend({label}, towns()); });
    add("order", {t["size"]}, [=, this] { return order({descending(t["state"]), ascending(t["name"])}, towns()); });
    add("union", {t["name"]}, [=] { return unite(towns(), filter(is_namesake, towns("by_state"))); });
    add("limit", {t["name"]}, [=] { return limit(lit(6U), lit(1U), unite(towns(), towns("by_state"))); });
    add("groups", {state, count, greatest}, [=] { return group({count, greatest}, {state}, towns()); });
    add("one group", {kinds, greatest}, [=] { return group({kinds, greatest}, {}, towns()); });
    add("type test", {t}, [=, this] { return filter(is_a(t, "Town"), towns("by_kind")); });
    add("reference", {b["name"]}, [=, this] { return filter(is_before_last, reach(b, towns("by_state"))); });
  }

  void add_joins() {
    const auto twin = q.define("twin", s["name"]);
    const auto all = [t = t] { return scan(t, "by_name"); };
    // A lookup per outer row, and an input of its own.
    const auto namesake = [=, this] { return scan(s, "by_state", {key::equal(t["name"]), key::above(lit(0U))}); };
    const auto others = [s = s] { return filter(like(s["name"], text(u"b%")), scan(s, "by_state")); };
    const expression is_state = eq(t["name"], s["state"]);
    add("inner join", {t["size"], s["size"]}, [=] { return join(all(), namesake()); });
    add("left join", {t["size"], s["name"]}, [=] { return left_join(all(), namesake()); });
    add("full join", {t["name"], s["name"]}, [=] { return full_join(is_state, all(), others()); });
    add("cross join", {t["name"], s["name"]}, [=] { return full_join(std::nullopt, all(), others()); });
    add("generated reference", {t["name"], b["name"]}, [=, this] { return join(all(), bind(b)); });
    add("generated text", {t["name"], twin}, [=] { return join(join(all(), namesake()), generate(twin)); });
  }

  query q;
  table_variable t = q.over("Town", "t");
  table_variable s = q.over("Town", "s");
  table_variable b = t.follow("before");
  OV_OBJ_REF last{};
  std::vector<std::pair<const char*, std::function<plan()>>> plans;
};

TEST_F(FailingCore, every_failing_call_leaves_as_its_status_and_frees_everything) {
  for (const auto& [name, make] : plans) {
    core_shim::reset();
    const std::string expected = rows_of_plan(make());
    ASSERT_EQ(expected.substr(0, 1), "(") << name;
    for (const core_shim::repeat how : {core_shim::repeat::once, core_shim::repeat::from_then_on}) {
      std::string found;
      std::uint32_t k = 0;
      while (found != expected) {
        plan fresh = make();
        std::optional<statement> tested;
        core_shim::reset();
        ++k;
        core_shim::fail_call(k, 5000 + k, how);
        found = outcome([&] { return tested.emplace(std::move(fresh)).rows(reading.context()); });
        ASSERT_TRUE(found == expected || found == std::to_string(5000 + k)) << found << ", " << name << ", call " << k;
        ASSERT_EQ(core_shim::open_iterators(), 0U) << name << ", call " << k;
        core_shim::reset();
        ASSERT_TRUE(!tested || rows_of(*tested, reading.context()) == expected) << name << " after call " << k;
      }
      EXPECT_GT(k, 20U);
    }
  }
}

TEST_F(FailingCore, a_host_may_leave_at_any_row) {
  for (const auto& [name, make] : plans) {
    const auto planned = std::get<0>(physical_to_exec::Plan(make()));
    bool at_end = false;
    for (int taken = 0; !at_end; ++taken) {
      execution_context context{planned.constants, {}, {}, reading.context()};
      const std::unique_ptr<enumerator> source(planned.root->create_enumerator(context));
      for (int row = 0; row < taken && !at_end; ++row) at_end = !source->next(context);
      EXPECT_TRUE(context.row_stack.empty()) << name;
    }
    EXPECT_EQ(core_shim::open_iterators(), 0U) << name;
  }
}

}  // namespace
}  // namespace tests::failing_core
