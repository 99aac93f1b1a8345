#include <atomic>
#include <functional>
#include <thread>

#include "host_test.hpp"

namespace tests {
namespace {

using ovhost::filter, ovhost::lit, ovhost::plan, ovhost::project, ovhost::query, ovhost::scan, ovhost::value_kind;

class Threads : public HostTest {
 protected:
  Threads()
      : HostTest({{"item", {{"id", value_kind::int64}, {"name", value_kind::text}}}},
                 {{"item", "by_id", {{"id"}}, true}}) {
    for (std::int64_t id = 0; id < 300; ++id) {
      insert("item", {id, std::u16string_view(id % 2 == 0 ? u"even" : u"Ödd")});
    }
  }
};

// Joins each item with its successor, for names that contain a letter; groups by name, with a text computed per row.
plan joined_and_grouped() {
  query q;
  const auto left = q.over("item", "l");
  const auto right = q.over("item", "r");
  auto successor = scan(right, "by_id", {ovhost::key::equal(ovhost::add(left["id"], lit(1)))});
  const auto label = q.define("label", ovhost::concat({left["name"], ovhost::text(u"!")}));
  const auto count = q.count_rows("count");
  const auto name = q.define("name", label);
  auto joined = ovhost::left_join(scan(left, "by_id"), std::move(successor));
  auto liked = filter(ovhost::like(left["name"], ovhost::text(u"%E%")), std::move(joined));
  return project({name, count}, ovhost::group({count}, {name}, ovhost::extend({label}, std::move(liked))));
}

plan sorted() {
  query q;
  const auto item = q.over("item", "i");
  auto ordered = ovhost::order({ovhost::ascending(item["name"]), ovhost::descending(item["id"])}, scan(item, "by_id"));
  return project({item["id"]}, ovhost::limit(lit(3), lit(1), std::move(ordered)));
}

TEST_F(Threads, run_one_statement_and_plan_others_at_the_same_time) {
  const ovhost::statement shared(joined_and_grouped());
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int n = 0; n < 8; ++n) {
    threads.emplace_back([&] {
      const ovhost::session own(database);
      for (int round = 0; round < 5; ++round) {
        const bool grouped = rows_of(shared, own.context()) == "('even!' i150)";
        const bool ordered = rows_of(ovhost::statement(sorted()), own.context()) == "(i296)(i294)(i292)";
        if (grouped && ordered) ++right;
      }
    });
  }
  for (std::thread& each : threads) each.join();
  EXPECT_EQ(right, 8 * 5);
}

}  // namespace
}  // namespace tests
