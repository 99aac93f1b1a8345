#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "ovcoredb/database.hpp"
#include "ovhost/expressions.hpp"
#include "ovhost/plans.hpp"
#include "ovhost/query.hpp"
#include "ovhost/schema.hpp"
#include "ovhost/session.hpp"
#include "ovhost/statement.hpp"

namespace tests {
namespace {

using ovhost::key::equal;

constexpr int object_count = 300;

void load(ovcoredb::database& database) {
  ovhost::schema schema(database);
  schema.define_table({"item", {{"id", ovhost::value_kind::int64}, {"name", ovhost::value_kind::text}}});
  schema.define_index({"item", "by_id", {{"id"}}, true});
  const ovhost::session session(database);
  const std::uint16_t tag = ovhost::catalog().table("item").tag;
  for (std::int64_t id = 0; id < object_count; ++id) {
    const std::vector<ovcoredb::cell> cells = {id, std::u16string_view(id % 2 == 0 ? u"even" : u"odd")};
    database.insert(tag, cells);
  }
}

// Each item with its successor, for names that contain a letter; grouped by name, with a text computed per row.
ovhost::statement joined_and_grouped() {
  ovhost::query query;
  const auto left = query.over("item", "l");
  const auto right = query.over("item", "r");
  auto successor = ovhost::scan(right, "by_id", {equal(ovhost::add(left["id"], ovhost::lit(1)))});
  const auto label = query.define("label", ovhost::concat({left["name"], ovhost::text(u"!")}));
  const auto count = query.count_rows("count");
  auto joined = ovhost::left_join(ovhost::scan(left, "by_id"), std::move(successor));
  auto liked = ovhost::filter(ovhost::like(left["name"], ovhost::text(u"%E%")), std::move(joined));
  const auto name = query.define("name", label);
  auto grouped = ovhost::group({count}, {name}, ovhost::extend({label}, std::move(liked)));
  return ovhost::statement(ovhost::project({name, count}, std::move(grouped)));
}

ovhost::statement sorted() {
  ovhost::query query;
  const auto item = query.over("item", "i");
  auto ordered =
      ovhost::order({ovhost::ascending(item["name"]), ovhost::descending(item["id"])}, ovhost::scan(item, "by_id"));
  return ovhost::statement(
      ovhost::project({item["id"]}, ovhost::limit(ovhost::lit(3), ovhost::lit(1), std::move(ordered))));
}

void run_on_eight_threads(const ovcoredb::database& database, const std::function<void(std::uint64_t)>& work) {
  std::vector<std::thread> threads;
  for (int n = 0; n < 8; ++n) {
    threads.emplace_back([&] {
      const ovhost::session session(database);
      for (int round = 0; round < 5; ++round) work(session.context());
    });
  }
  for (std::thread& each : threads) each.join();
}

TEST(Threads, run_one_statement_and_plan_others_at_the_same_time) {
  ovcoredb::database database;
  load(database);
  const ovhost::session session(database);
  const ovhost::statement shared = joined_and_grouped();
  std::atomic<int> right = 0;
  run_on_eight_threads(database, [&](std::uint64_t context) {
    const std::vector<ovhost::row> groups = shared.rows(context);
    const bool counted = groups.size() == 1 && std::get<std::int64_t>(groups[0][1]) == object_count / 2;
    const ovhost::statement own = sorted();
    const std::vector<ovhost::row> first = own.rows(context);
    const bool ordered = first.size() == 3 && std::get<std::int64_t>(first[0][0]) == object_count - 4;
    if (counted && ordered) ++right;
  });
  EXPECT_EQ(right, 8 * 5);
}

}  // namespace
}  // namespace tests
