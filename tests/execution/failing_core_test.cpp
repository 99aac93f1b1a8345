// Plans over a core that fails, and a host that walks away.
#include <gtest/gtest.h>

#include <functional>

#include "core_shim/core_shim.hpp"
#include "outcome.hpp"
#include "ovhost/plans.hpp"
#include "ovhost/schema.hpp"
#include "ovhost/session.hpp"
#include "ovhost/statement.hpp"

namespace tests {
namespace {

using namespace ovhost;  // NOLINT: plans are written in its words

// Towns, some of which are called like their state, each with a reference to the town before.
struct towns {
  towns() {
    definitions.define_table({"Town",
                              {{"name", value_kind::text},
                               {"state", value_kind::text},
                               {"size", value_kind::uint64},
                               {"before", refers_to{"Town"}}}});
    definitions.define_index({"Town", "by_name", {{"name"}}});
    definitions.define_index({"Town", "by_state", {{"state", false}, {"size"}}});
    definitions.define_index({"Town", "by_kind", {{"object_type"}}});
    const std::uint16_t tag = catalog(reading.context()).table("Town").tag;
    const std::u16string_view listed[][2] = {
        {u"Aden", u"Yemen"}, {u"Bern", u"Bern"}, {u"Bonn", u""}, {u"Brno", u"Bern"}, {u"Utah", u"Utah"}};
    for (std::uint64_t size = 0; size < std::size(listed); ++size) {
      ovcoredb::cell cells[] = {listed[size][0], listed[size][1], size, last};
      if (size == 0) cells[3] = {};
      last = database.insert(tag, cells);
    }
  }

  ovcoredb::database database;
  schema definitions{database};
  session reading{database};
  OV_OBJ_REF last{};
};

class FailingCore : public testing::Test, protected towns {
 protected:
  // Every row of a plan, spelled; or the status that ended it.
  template <class Prepare>
  std::string run(Prepare prepare) {
    try {
      std::string words;
      prepare().run(reading.context(), {}, [&words](row&& next) {
        words += '(';
        for (const value& each : next) words += spell(each) + ' ';
        words += ')';
      });
      return words;
    } catch (const db_util::db_exception& error) {
      return "status " + std::to_string(error.code);
    }
  }

  // Plans that open iterators in every way there is.
  std::vector<std::function<plan()>> plans() {
    return {
        // Two texts that the core lends for the same row.
        [this] { return project({t["name"]}, filter(eq(t["name"], t["state"]), scan(t, "by_name"))); },
        [this] {
          return project({t["size"], t["name"]}, scan(t, "by_name", {key::begins_with(text(u"B"))}, walk::descending));
        },
        // The inner side is a lookup per outer row.
        [this] {
          return project({t["size"], s["size"]},
                         join(scan(t, "by_name"), scan(s, "by_state", {key::equal(t["name"]), key::above(lit(0U))})));
        },
        [this] {
          return project({t["size"], s["name"]},
                         order({descending(t["name"])},
                               left_join(scan(t, "by_kind"), scan(s, "by_state", {key::equal(t["name"])}))));
        },
        [this] {
          return project({t["name"]},
                         limit(lit(6U), lit(1U), unite(scan(t, "by_name"), filter(is_known(), by_state()))));
        },
        // A literal reference, which the core completes: the town before the last.
        [this] {
          const OV_OBJ_REF before_last{last.object_number - 1, 0};
          return project({b["name"]}, filter(eq(b, lit(before_last)), reach(b, scan(t, "by_state"))));
        },
    };
  }

  expression is_known() { return eq(t["before"], t["before"]); }
  plan by_state() { return scan(t, "by_state"); }

  query names;
  table_variable t = table_of("t");
  table_variable s = table_of("s");
  table_variable b = t.follow("before");

  table_variable table_of(const char* name) { return names.over("Town", name); }
};

TEST_F(FailingCore, every_failing_call_leaves_as_its_status_and_frees_everything) {
  for (const auto& make : plans()) {
    const statement planned(make());
    const auto again = [&planned]() -> const statement& { return planned; };
    core_shim::reset();
    const std::string expected = run(again);
    ASSERT_NE(expected, "");
    for (const core_shim::repeat how : {core_shim::repeat::once, core_shim::repeat::from_then_on}) {
      std::string found;
      std::uint64_t k = 0;
      while (found != expected) {
        plan fresh = make();
        core_shim::reset();
        ++k;
        core_shim::fail_call(k, 5000 + static_cast<std::uint32_t>(k), how);
        found = run([&fresh] { return statement(std::move(fresh)); });
        ASSERT_TRUE(found == expected || found == "status " + std::to_string(5000 + k)) << found << " at call " << k;
        ASSERT_EQ(core_shim::open_iterators(), 0U) << "at call " << k;
        core_shim::reset();
        ASSERT_EQ(run(again), expected) << "after a failure at call " << k;
      }
      EXPECT_GT(k, 20U);
    }
  }
  EXPECT_EQ(core_shim::wrong_frees(), 0U);
}

TEST_F(FailingCore, a_host_may_leave_at_any_row) {
  for (const auto& make : plans()) {
    const auto planned = std::get<0>(physical_to_exec::Plan(make()));
    bool at_end = false;
    for (int rows = 0; !at_end; ++rows) {
      execution_context context{planned.constants, {}, {}, reading.context()};
      const std::unique_ptr<enumerator> source(planned.root->create_enumerator(context));
      for (int row = 0; row < rows && !at_end; ++row) at_end = !source->next(context);
      EXPECT_TRUE(context.row_stack.empty());
    }
    EXPECT_EQ(core_shim::open_iterators(), 0U);
  }
  EXPECT_EQ(core_shim::wrong_frees(), 0U);
}

}  // namespace
}  // namespace tests
