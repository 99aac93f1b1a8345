#include "queries/random_query.hpp"

#include <algorithm>
#include <cstdlib>

#include "host_test.hpp"
#include "queries/sqlite_table.hpp"

namespace tests {
namespace {

// The same tables in both databases.
class RandomQueries : public HostTest {
 protected:
  RandomQueries() : HostTest({definition("r"), definition("s")}, {}) {
    for (const std::string table : {"r", "s"}) {
      definitions.define_index({table, "by_id", {{"id", false}}, true});
      definitions.define_index({table, "by_a", {{"a"}}});
      definitions.define_index({table, "by_b_t", {{"b"}, {"t", false}}});
      peer.query("CREATE TABLE " + table + " (id INTEGER, a INTEGER, b INTEGER, t TEXT)");
    }
    defined = database.object_count();
  }

  void refill(std::mt19937& random) {
    database.remove_after(defined);
    for (const std::string table : {"r", "s"}) {
      peer.query("DELETE FROM " + table);
      fill(table, random);
    }
  }

  sqlite_database peer;

 private:
  static ovhost::table_definition definition(const char* table) {
    using enum ovhost::value_kind;
    return {table, {{"id", int64}, {"a", int64}, {"b", int64}, {"t", ovhost::value_kind::text}}};
  }

  void fill(const std::string& table, std::mt19937& random) {
    const std::int64_t count = random() % 10 == 0 ? 0 : static_cast<std::int64_t>(random() % 20);
    for (std::int64_t id = 0; id < count; ++id) {
      std::vector<ovcoredb::cell> cells = {id, {}, {}, {}};
      std::string list = std::to_string(id);
      for (std::size_t column = 1; column < 4; ++column) {
        const std::int64_t number = static_cast<std::int64_t>(random() % 8) - 1;
        const std::u16string_view word = std::u16string_view(u"xyz").substr(0, random() % 4);
        if (random() % 4 != 0) cells[column] = column == 3 ? ovcoredb::cell(word) : ovcoredb::cell(number);
        const bool is_null = cells[column].index() == 0;
        const std::string quoted = "'" + std::string(word.begin(), word.end()) + "'";
        list += ", " + (is_null ? "NULL" : column == 3 ? quoted : std::to_string(number));
      }
      insert(table.c_str(), cells);
      peer.query("INSERT INTO " + table + " VALUES (" + list + ")");
    }
  }

  std::uint64_t defined = 0;  // objects of the metadata
};

// SQLite has neither unsigned numbers nor truth values.
std::string spell_signed(row values) {
  for (value& each : values) {
    if (const auto* number = std::get_if<std::uint64_t>(&each)) each = static_cast<std::int64_t>(*number);
  }
  return spell(values);
}

TEST_F(RandomQueries, agree_with_sqlite) {
  const unsigned seed = std::random_device{}();
  std::mt19937 random(seed);
  const char* const asked = std::getenv("OV_QUERY_FILLINGS");  // of the tables, with sixty queries each
  const int fillings = asked == nullptr ? 15 : std::atoi(asked);
  for (int filling = 0; filling < fillings; ++filling) {
    refill(random);
    for (int number = 0; number < 60; ++number) {
      query_pair made = random_query(random).make(number % 7);
      std::vector<std::string> ours;
      const ovhost::statement statement(std::move(made.plan));
      for (const row& each : statement.rows(reading.context())) ours.push_back(spell_signed(each));
      std::vector<std::string> theirs = peer.query(made.sql);
      std::sort(ours.begin(), ours.end());
      std::sort(theirs.begin(), theirs.end());
      ASSERT_EQ(ours, theirs) << "seed " << seed << ", filling " << filling << ", " << number << ": " << made.sql;
    }
  }
}

}  // namespace
}  // namespace tests
