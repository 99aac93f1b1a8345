// Rows that are counted or skipped without looking are those that would have been found. Built twice: with a core that
// can skip, and with one that only steps.
#include <algorithm>
#include <functional>
#include <random>

#include "core_shim/core_shim.hpp"
#include "host_test.hpp"
#include "ovhost/plans/expressions.hpp"
#include "ovhost/plans/query.hpp"

namespace tests {
namespace {

#ifdef CORE_SHIM_ONLY_STEPS
constexpr bool core_skips = false;
#else
constexpr bool core_skips = true;
#endif

constexpr std::int64_t row_count = 700;  // in several blocks of an index

class Skip : public HostTest {
 protected:
  Skip()
      : HostTest({{"item", {{"id", ovhost::value_kind::int64}}}}, {{"item", "by_id", {{"id"}}, true}}),
        item(query.over("item", "item")) {
    for (std::int64_t id = 0; id < row_count; ++id) insert("item", {id});
    core_shim::reset();
  }
  ~Skip() override {
    core_shim::reset();
    EXPECT_EQ(core_shim::open_iterators(), 0U);
  }

  std::int64_t below(std::int64_t bound) {
    return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(bound));
  }

  ovhost::plan ids(ovhost::plan of) { return ovhost::project({item["id"]}, std::move(of)); }
  ovhost::plan counted(ovhost::plan of) {
    const ovhost::aggregation_column count = query.count_rows("count");
    const ovhost::aggregation_column again = query.count_rows("again");
    return ovhost::project({count, again}, ovhost::group({count, again}, {}, std::move(of)));
  }
  static ovhost::plan limited(std::int64_t limit, std::int64_t offset, ovhost::plan of) {
    return ovhost::limit(ovhost::lit(limit), ovhost::lit(offset), std::move(of));
  }

  // Scans, unions, limits and filters, some within others; said is what it is.
  std::function<ovhost::plan()> any_plan(int depth, std::string& said) {
    const std::int64_t kind = depth == 0 ? 0 : below(4);
    if (kind == 0) {
      const std::int64_t first = below(row_count);
      const bool ascends = below(2) == 0;
      said += "scan " + std::to_string(first) + (ascends ? " up" : " down");
      return [=, this] {
        return ovhost::scan(item, "by_id", {ovhost::key::at_least(ovhost::lit(first))},
                            ascends ? ovhost::walk::ascending : ovhost::walk::descending);
      };
    }
    const std::int64_t limit = below(2 * row_count);
    const std::int64_t offset = below(row_count);
    said += kind == 1 ? "union (" : kind == 2 ? "limit (" : "filter (";
    const auto of = any_plan(depth - 1, said);
    said += kind == 1 ? ", " : "";
    const auto other = kind == 1 ? any_plan(depth - 1, said) : of;
    said += kind == 2 ? ", " + std::to_string(limit) + ", " + std::to_string(offset) + ")" : ")";
    if (kind == 1) return [=] { return ovhost::unite(of(), other()); };
    if (kind == 2) return [=] { return limited(limit, offset, of()); };
    return [=, this] { return ovhost::filter(ovhost::lt(item["id"], ovhost::lit(offset)), of()); };
  }

  rows rows_of(ovhost::plan of) { return ovhost::statement(std::move(of)).rows(reading.context()); }

  // The rows, or the error where the k-th call of that name fails with status 9.
  std::string failing(const char* name, std::uint64_t k, ovhost::plan of) {
    const ovhost::statement planned(std::move(of));
    core_shim::fail_call(name, k, 9);
    const std::string found = tests::rows_of(planned, reading.context());
    core_shim::reset();
    return found;
  }

  std::uint64_t seed = std::random_device{}();
  testing::ScopedTrace trace{__FILE__, __LINE__, "seed " + std::to_string(seed)};
  std::mt19937_64 random{seed};
  ovhost::query query;
  ovhost::table_variable item;
};

TEST_F(Skip, counts_and_passes_over_the_rows_that_there_are) {
  for (int round = 0; round < 150; ++round) {
    std::string said;
    const auto make = any_plan(round % 4, said);
    const rows all = rows_of(ids(make()));
    const auto size = static_cast<std::int64_t>(all.size());
    ASSERT_EQ(spell(rows_of(counted(make()))), spell(rows{{i(size), i(size)}})) << said;
    const std::int64_t offset = std::min(below(size + 3), size + 1);
    const std::int64_t limit = below(5);
    const auto first = all.begin() + std::min(offset, size);
    const rows expected(first, first + std::min(limit, all.end() - first));
    ASSERT_EQ(spell(rows_of(ids(limited(limit, offset, make())))), spell(expected)) << said << " from " << offset;
  }
}

// A core that can skip is asked once, another for every row and for the end.
TEST_F(Skip, asks_the_core_as_seldom_as_it_can) {
  const std::string all = "(i700 i700)";
  const auto count = [&] { return counted(ovhost::scan(item, "by_id")); };
  const auto offset = [&] { return ids(limited(1, 5, ovhost::scan(item, "by_id"))); };
  if (core_skips) {
    EXPECT_EQ(failing("orv_iterator_skip", 1, count()), "9");
    EXPECT_EQ(failing("orv_iterator_skip", 2, count()), all);
    EXPECT_EQ(failing("orv_iterator_next", 1, count()), all);
    EXPECT_EQ(failing("orv_iterator_skip", 1, offset()), "9");
    EXPECT_EQ(failing("orv_iterator_next", 1, offset()), "9") << "the row itself";
    EXPECT_EQ(failing("orv_iterator_next", 2, offset()), "(i5)");
  } else {
    EXPECT_EQ(failing("orv_iterator_next", row_count + 1, count()), "9");
    EXPECT_EQ(failing("orv_iterator_next", row_count + 2, count()), all);
    EXPECT_EQ(failing("orv_iterator_next", 6, offset()), "9");
    EXPECT_EQ(failing("orv_iterator_next", 7, offset()), "(i5)");
  }
}

// What computes a skipped row may fail.
TEST_F(Skip, rows_are_computed_all_the_same) {
  const auto failing_at = [&](std::int64_t id) {
    const auto quotient =
        query.define("quotient", ovhost::div(ovhost::lit(1), ovhost::sub(item["id"], ovhost::lit(id))));
    return ovhost::extend({quotient}, ovhost::scan(item, "by_id"));
  };
  EXPECT_EQ(rows_of_plan(counted(failing_at(row_count - 1))), "7041");
  EXPECT_EQ(rows_of_plan(ids(limited(1, 3, failing_at(2)))), "7041");
  EXPECT_EQ(rows_of_plan(ids(limited(1, 3, failing_at(4)))), "(i3)");
}

}  // namespace
}  // namespace tests
