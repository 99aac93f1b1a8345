#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "ovsql/session/database.hpp"

namespace tests {
namespace {

// Defines, fills, indexes and asks, with an error between.
std::string answer() {
  ovsql::database db;
  db.execute("CREATE TABLE item (id INT PRIMARY KEY, of REFERENCES item); INSERT INTO item (id) VALUES (1), (2), (3)");
  db.execute("INSERT INTO item SELECT id + 10, i FROM item i; CREATE INDEX by_of ON item (of)");
  try {
    db.execute("INSERT INTO item (id) VALUES (4), (1)");
  } catch (const ovsql::error&) {
    db.execute("CREATE VIEW half AS SELECT of.id AS o FROM item WHERE of IS NOT NULL");
  }
  ovsql::statement asked = db.prepare("SELECT (SELECT count(*) FROM item), sum(o) * ? FROM half");
  asked.bind(1, 7);
  return asked.step() ? asked.words(0) + " " + asked.words(1) : "";
}

TEST(SqlThreads, have_a_database_each) {
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int n = 0; n < 4; ++n) {
    threads.emplace_back([&right] {
      for (int round = 0; round < 5; ++round) right += answer() == "6 42" ? 1 : 0;
    });
  }
  for (std::thread& each : threads) each.join();
  EXPECT_EQ(right, 4 * 5);
}

}  // namespace
}  // namespace tests
