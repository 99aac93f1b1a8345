#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "ovcoredb/database.hpp"
#include "ovhost/schema.hpp"
#include "ovhost/session.hpp"
#include "ovhost/statement.hpp"
#include "ovhost/text.hpp"
#include "queries/random_query.hpp"
#include "queries/sqlite_table.hpp"

namespace tests {
namespace {

using ovhost::value_kind;

// The same tables in both databases.
class twin_tables {
 public:
  explicit twin_tables(std::mt19937& random) {
    ovhost::schema schema(database_);
    for (const std::string table : {"r", "s"}) {
      schema.define_table(
          {table,
           {{"id", value_kind::int64}, {"a", value_kind::int64}, {"b", value_kind::int64}, {"t", value_kind::text}}});
      schema.define_index({table, "by_id", {{"id", false}}, true});
      schema.define_index({table, "by_a", {{"a"}}});
      schema.define_index({table, "by_b_t", {{"b"}, {"t", false}}});
      peer_.query("CREATE TABLE " + table + " (id INTEGER, a INTEGER, b INTEGER, t TEXT)");
      fill(table, random);
    }
  }

  const ovcoredb::database& database() const { return database_; }
  sqlite_database& peer() { return peer_; }

 private:
  void fill(const std::string& table, std::mt19937& random) {
    const char16_t* const texts[] = {u"", u"x", u"xy", u"xyz", u"y"};
    const auto below = [&random](int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); };
    const int count = below(10) == 0 ? 0 : below(20);
    for (std::int64_t id = 0; id < count; ++id) {
      const auto number = [&]() -> ovcoredb::cell {
        if (below(4) == 0) return {};
        return std::int64_t{below(8)} - 1;
      };
      const auto text = [&]() -> ovcoredb::cell {
        if (below(4) == 0) return {};
        return std::u16string_view(texts[below(5)]);
      };
      const std::vector<ovcoredb::cell> cells = {id, number(), number(), text()};
      database_.insert(tag(table), cells);
      std::string list;
      for (const ovcoredb::cell& cell : cells) list += (list.empty() ? "" : ", ") + sql(cell);
      peer_.query("INSERT INTO " + table + " VALUES (" + list + ")");
    }
  }

  std::uint16_t tag(const std::string& table) const {
    const ovhost::session session(database_);
    return ovhost::catalog().table(table).tag;
  }

  static std::string sql(const ovcoredb::cell& cell) {
    if (const auto* number = std::get_if<std::int64_t>(&cell)) return std::to_string(*number);
    if (const auto* text = std::get_if<std::u16string_view>(&cell)) return "'" + ovhost::utf8(*text) + "'";
    return "NULL";
  }

  ovcoredb::database database_;
  sqlite_database peer_;
};

TEST(RandomQueries, agree_with_sqlite) {
  const unsigned seed = std::random_device{}();
  std::mt19937 random(seed);
  constexpr int databases = 15;
  constexpr int queries = 60;
  for (int d = 0; d < databases; ++d) {
    twin_tables tables(random);
    const ovhost::session session(tables.database());
    for (int q = 0; q < queries; ++q) {
      query_pair made = random_query(random).make(q % 7);
      const ovhost::statement statement(std::move(made.plan));
      result ours;
      for (const auto& each : statement.rows(session.context())) ours.push_back(show_row(each));
      result theirs = tables.peer().query(made.sql);
      std::sort(ours.begin(), ours.end());
      std::sort(theirs.begin(), theirs.end());
      ASSERT_EQ(ours, theirs) << "seed " << seed << ", database " << d << ", query " << q << ": " << made.sql;
    }
  }
}

}  // namespace
}  // namespace tests
