// Random queries over two small tables, as a plan and as SQL that means the same.
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>

#include "host_test.hpp"
#include "keeping_policies.hpp"
#include "ovhost/plans/expressions.hpp"
#include "ovhost/plans/query.hpp"

namespace tests {
namespace {

// An expression both ways; for a column that is how a plan reads it, and its name in SQL, which no other column has.
struct both_ways {
  ovhost::expression plan;
  std::string sql;
  bool is_text = false;
};
using columns = std::vector<both_ways>;

// A query whose rows are the columns. SQL and plan may yield them in different orders.
struct query_pair {
  ovhost::plan plan;
  std::string sql;
  tests::columns columns;

  std::string from() const { return " FROM (" + sql + ")"; }
};

// Tables "r" and "s", each with columns id, a and b (int64, NULLs and duplicates but for id) and t (text), and with
// indexes "by_id" (unique, descending), "by_a" and "by_b_t".
class random_query {
 public:
  explicit random_query(std::mt19937& random) : random_(random) {}

  // Makes a query of about that many steps, with its columns projected.
  query_pair make(int steps) {
    query_pair made = relation(steps);
    std::vector<ovhost::expression> items;
    std::string list;
    for (const both_ways& each : made.columns) {
      items.push_back(each.plan);
      add_to(list, each.sql);
    }
    return {ovhost::project(std::move(items), std::move(made.plan)), "SELECT " + list + made.from(), {}};
  }

 private:
  static void add_to(std::string& list, const std::string& item) { list += (list.empty() ? "" : ", ") + item; }

  query_pair relation(int steps) {
    if (steps <= 0) return scanned();
    const int kind = below(9);
    if (kind == 5) return full_joined(relation((steps - 1) / 2), relation((steps - 1) / 2));
    query_pair of = relation(steps - 1);
    if (kind <= 1) return filtered(std::move(of));
    if (kind == 2) return extended(std::move(of));
    if (kind == 3) return grouped(std::move(of));
    if (kind == 4) return limited(std::move(of));
    if (kind == 6) return united(std::move(of));
    return joined(std::move(of), relation((steps - 1) / 2));
  }

  query_pair scanned() {
    namespace key = ovhost::key;
    const std::string table = below(2) == 0 ? "r" : "s";
    const ovhost::table_variable variable = query_.over(table, fresh("v"));
    columns made;
    std::string list;
    for (const std::string property : {"id", "a", "b", "t"}) {
      made.push_back({variable[property], fresh("c"), property == "t"});
      add_to(list, property + " AS " + made.back().sql);
    }
    const std::int64_t bound = below(12) - 3;
    const std::string sql = std::to_string(bound);
    const auto number = ovhost::lit(bound);
    const std::tuple<const char*, std::vector<ovhost::scan_range>, std::string> kinds[] = {
        {"by_id", {}, ""},
        {"by_id", {key::below(number)}, " WHERE id < " + sql},
        {"by_a", {key::equal(number)}, " WHERE a = " + sql},
        {"by_a", {key::null()}, " WHERE a IS NULL"},
        {"by_b_t", {key::at_least(ovhost::lit(static_cast<double>(bound) + 0.5))}, " WHERE b >= " + sql + " + 0.5"},
        {"by_b_t",
         {key::equal(number), key::begins_with(ovhost::text(u"x"))},
         " WHERE b = " + sql + " AND t LIKE 'x%'"}};
    const auto& [index, ranges, condition] = kinds[below(6)];
    const auto walk = below(2) == 0 ? ovhost::walk::ascending : ovhost::walk::descending;
    return {ovhost::scan(variable, index, ranges, walk), "SELECT " + list + " FROM " + table + condition, made};
  }

  query_pair filtered(query_pair of) {
    const both_ways test = condition(of.columns);
    return {ovhost::filter(test.plan, std::move(of.plan)), "SELECT *" + of.from() + " WHERE " + test.sql, of.columns};
  }

  query_pair extended(query_pair of) {
    const both_ways added = number(of.columns);
    const ovhost::computation column = query_.define(fresh("x"), added.plan);
    of.columns.push_back({column, fresh("c")});
    return {ovhost::extend({column}, std::move(of.plan)),
            "SELECT *, " + added.sql + " AS " + of.columns.back().sql + of.from(), of.columns};
  }

  query_pair grouped(query_pair of) {
    std::vector<ovhost::assignment> keys;
    std::vector<ovhost::aggregate> aggregates;
    columns made;
    std::string key_list;
    std::string list;
    const auto add = [&](ovhost::expression read, const std::string& sql, bool is_text) {
      made.push_back({std::move(read), fresh("c"), is_text});
      add_to(list, sql + " AS " + made.back().sql);
    };
    const auto aggregate = [&](const ovhost::aggregation_column& column, const std::string& sql) {
      aggregates.push_back(column);
      add(column, sql, false);
    };
    const both_ways argument = number(of.columns, 1);
    const std::string in_brackets = "(" + argument.sql + ")";
    aggregate(query_.count_rows(fresh("x")), "count(*)");
    aggregate(query_.count(fresh("x"), argument.plan), "count" + in_brackets);
    aggregate(query_.sum(fresh("x"), argument.plan), "sum" + in_brackets);
    aggregate(query_.minimum(fresh("x"), argument.plan), "min" + in_brackets);
    aggregate(query_.maximum(fresh("x"), argument.plan), "max" + in_brackets);
    // NULL counts as one more distinct value.
    aggregate(query_.count_distinct(fresh("x"), argument.plan),
              "count(DISTINCT " + argument.sql + ") + coalesce(max(" + in_brackets + " IS NULL), 0)");
    for (int left = below(3); left != 0; --left) {
      const both_ways& of_key = of.columns[random_() % of.columns.size()];
      const ovhost::computation key = query_.define(fresh("x"), of_key.plan);
      keys.push_back(key);
      add(key, of_key.sql, of_key.is_text);
      add_to(key_list, of_key.sql);
    }
    return {ovhost::group(std::move(aggregates), std::move(keys), std::move(of.plan)),
            "SELECT " + list + of.from() + (key_list.empty() ? "" : " GROUP BY " + key_list), std::move(made)};
  }

  // Orders by every column, so that it does not matter which of equal rows are left out.
  query_pair limited(query_pair of) {
    std::vector<ovhost::order_key> keys;
    std::string list;
    for (const both_ways& each : of.columns) {
      const bool ascending = below(2) == 0;
      keys.push_back(ascending ? ovhost::ascending(each.plan) : ovhost::descending(each.plan));
      add_to(list, each.sql + (ascending ? "" : " DESC"));
    }
    const int limit = below(20);
    const int offset = below(5);
    auto skipped = offset == 0 ? std::nullopt : std::optional<ovhost::expression>(ovhost::lit(offset));
    auto ordered = ovhost::order(std::move(keys), std::move(of.plan));
    return {ovhost::limit(ovhost::lit(limit), std::move(skipped), std::move(ordered)),
            "SELECT *" + of.from() + " ORDER BY " + list + " LIMIT " + std::to_string(limit) + " OFFSET " +
                std::to_string(offset),
            of.columns};
  }

  static columns of_both(const query_pair& left, const query_pair& right) {
    columns all = left.columns;
    all.insert(all.end(), right.columns.begin(), right.columns.end());
    return all;
  }

  // The inner side is a filter that sees both sides.
  query_pair joined(query_pair left, query_pair right) {
    columns both = of_both(left, right);
    const both_ways test = condition(both);
    const bool keeps_left = below(2) == 0;
    const char* const how = keeps_left ? " LEFT JOIN (" : " JOIN (";
    const std::string sql = "SELECT *" + left.from() + how + right.sql + ") ON " + test.sql;
    const auto join = keeps_left ? ovhost::left_join : ovhost::join;
    return {join(std::move(left.plan), ovhost::filter(test.plan, std::move(right.plan))), sql, both};
  }

  query_pair full_joined(query_pair left, query_pair right) {
    columns both = of_both(left, right);
    const bool has_condition = below(3) != 0;  // without one there is every pair
    const both_ways test = comparison(both);
    const std::string sql =
        "SELECT *" + left.from() + " FULL JOIN (" + right.sql + ") ON " + (has_condition ? test.sql : "TRUE");
    return {ovhost::full_join(has_condition ? std::optional(test.plan) : std::nullopt, std::move(left.plan),
                              std::move(right.plan)),
            sql, both};
  }

  // Both sides must name their columns alike and have one type; distinct counts are unsigned.
  query_pair united(query_pair left) {
    const both_ways* from_left = pick(left.columns, false);
    if (from_left == nullptr) return left;
    query_pair right = scanned();
    const both_ways* from_right = pick(right.columns, false);
    const auto as_int64 = [](const both_ways& of) { return ovhost::to(ovhost::value_kind::int64, of.plan); };
    const ovhost::computation named = query_.define(fresh("x"), as_int64(*from_left));
    const std::string name = fresh("c");
    // The limit, which is none, keeps SQLite from merging the union into a query around it: with a FULL JOIN inside,
    // that makes it refuse some valid statements.
    const std::string sql = "SELECT * FROM (SELECT " + from_left->sql + " AS " + name + left.from() +
                            " UNION ALL SELECT " + from_right->sql + right.from() + ") LIMIT -1";
    auto renamed = ovhost::extend({named.with(as_int64(*from_right))}, std::move(right.plan));
    return {ovhost::unite(ovhost::project({named}, ovhost::extend({named}, std::move(left.plan))),
                          ovhost::project({named}, std::move(renamed))),
            sql,
            {{named, name}}};
  }

  const both_ways* pick(const columns& of, bool is_text) {
    std::vector<const both_ways*> fitting;
    for (const both_ways& each : of) {
      if (each.is_text == is_text) fitting.push_back(&each);
    }
    return fitting.empty() ? nullptr : fitting[random_() % fitting.size()];
  }

  both_ways condition(const columns& of, int depth = 2) {
    if (depth == 0 || below(2) == 0) return below(4) == 0 ? listed(of) : comparison(of);
    const both_ways left = condition(of, depth - 1);
    const int kind = below(4);
    const both_ways tested = number(of, 1);
    const both_ways right = condition(of, depth - 1);
    if (kind == 0) return {ovhost::negated(left.plan), "NOT (" + left.sql + ")"};
    if (kind == 1) return {ovhost::is_null(tested.plan), "(" + tested.sql + ") IS NULL"};
    return {kind == 2 ? ovhost::both(left.plan, right.plan) : ovhost::either(left.plan, right.plan),
            "((" + left.sql + (kind == 2 ? ") AND (" : ") OR (") + right.sql + "))"};
  }

  // IN or NOT IN, as a plan states it: short lists, and longer ones, which are looked up.
  both_ways listed(const columns& of) {
    const bool texts = below(3) == 0;
    const bool is_in = below(3) != 0;
    const both_ways tested = texts ? text(of) : number(of, 1);
    std::optional<ovhost::expression> chain;
    std::string list;
    for (int left = 1 + below(9); left != 0; --left) {
      const both_ways member = below(15) == 0 ? both_ways{ovhost::null(), "NULL"} : texts ? text({}) : number({});
      const auto test = is_in ? ovhost::eq(tested.plan, member.plan) : ovhost::ne(tested.plan, member.plan);
      chain = !chain ? test : is_in ? ovhost::either(*chain, test) : ovhost::both(*chain, test);
      add_to(list, member.sql);
    }
    return {*chain, "((" + tested.sql + (is_in ? ") IN (" : ") NOT IN (") + list + "))"};
  }

  both_ways comparison(const columns& of, int depth = 2) {
    const bool texts = below(4) == 0;
    const both_ways left = texts ? text(of) : number(of, depth);
    const both_ways right = texts ? text(of) : number(of, depth);
    const std::pair<const char*, ovhost::expression> kinds[] = {
        {"<", ovhost::lt(left.plan, right.plan)},  {">=", ovhost::ge(left.plan, right.plan)},
        {"<>", ovhost::ne(left.plan, right.plan)}, {"<=", ovhost::le(left.plan, right.plan)},
        {">", ovhost::gt(left.plan, right.plan)},  {"=", ovhost::eq(left.plan, right.plan)}};
    const auto& [sign, plan] = kinds[std::min(below(9), 5)];
    return {plan, "(" + left.sql + ") " + sign + " (" + right.sql + ")"};
  }

  // Uses small numbers: nothing overflows. Leaves out division, which differs.
  both_ways number(const columns& of, int depth = 2) {
    const both_ways* column = pick(of, false);
    if (column == nullptr || below(5) == 0) {
      const std::int64_t drawn = below(9) - 2;
      return {ovhost::lit(drawn), std::to_string(drawn)};
    }
    if (depth == 0 || below(3) != 0) return *column;
    const both_ways left = number(of, depth - 1);
    const int kind = below(3);
    if (kind == 0) return {ovhost::sub(left.plan, column->plan), "(" + left.sql + " - " + column->sql + ")"};
    if (kind == 1) return {ovhost::add(left.plan, column->plan), "(" + left.sql + " + " + column->sql + ")"};
    const both_ways test = comparison({*column}, depth - 1);
    return {ovhost::when_as(ovhost::value_kind::int64, test.plan, left.plan, ovhost::null()),
            "CASE WHEN " + test.sql + " THEN " + left.sql + " END"};
  }

  both_ways text(const columns& of) {
    const both_ways* column = pick(of, true);
    if (column != nullptr && below(3) != 0) return *column;
    const std::string word = std::vector{"", "x", "xy", "y"}[random_() % 4];
    return {ovhost::text(std::string_view(word)), "'" + word + "'", true};
  }

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  std::string fresh(const char* prefix) { return prefix + std::to_string(++names_); }

  std::mt19937& random_;
  ovhost::query query_;
  int names_ = 0;
};

// Has the same tables in both databases.
class RandomQueries : public HostTest {
 protected:
  RandomQueries() : HostTest({definition("r"), definition("s")}, {}) {
    EXPECT_EQ(sqlite3_open(":memory:", &peer), SQLITE_OK);
    for (const std::string table : {"r", "s"}) {
      definitions.define_index({table, "by_id", {{"id", false}}, true});
      definitions.define_index({table, "by_a", {{"a"}}});
      definitions.define_index({table, "by_b_t", {{"b"}, {"t", false}}});
      ask_sqlite("CREATE TABLE " + table + " (id INTEGER, a INTEGER, b INTEGER, t TEXT)");
    }
    defined = database.object_count();
  }

  ~RandomQueries() override { sqlite3_close(peer); }

  void refill(std::mt19937& random) {
    database.remove_after(defined);
    for (const std::string table : {"r", "s"}) {
      ask_sqlite("DELETE FROM " + table);
      fill(table, random);
    }
  }

  // Runs a statement and returns its rows, each spelled with all its numbers as int64 or double. A failure is a test
  // failure that shows the statement.
  std::vector<std::string> ask_sqlite(const std::string& sql) {
    sqlite3_stmt* raw = nullptr;
    const int status = sqlite3_prepare_v2(peer, sql.c_str(), -1, &raw, nullptr);
    EXPECT_EQ(status, SQLITE_OK) << sqlite3_errmsg(peer) << " in " << sql;
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement(raw, &sqlite3_finalize);
    std::vector<std::string> found;
    while (status == SQLITE_OK && sqlite3_step(raw) == SQLITE_ROW) {
      row values;
      for (int column = 0; column < sqlite3_column_count(raw); ++column) values.push_back(column_of(raw, column));
      found.push_back(spell(values));
    }
    return found;
  }

 private:
  static value column_of(sqlite3_stmt* statement, int column) {
    const int type = sqlite3_column_type(statement, column);
    if (type == SQLITE_NULL) return null();
    if (type == SQLITE_INTEGER) return i(sqlite3_column_int64(statement, column));
    if (type == SQLITE_FLOAT) return sqlite3_column_double(statement, column);
    const std::string held = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text({held.begin(), held.end()});
  }

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
      ask_sqlite("INSERT INTO " + table + " VALUES (" + list + ")");
    }
  }

  sqlite3* peer = nullptr;    // a database in memory beside the one under test
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
  const int fillings = asked == nullptr ? 50 : std::atoi(asked);
  for (int filling = 0; filling < fillings; ++filling) {
    refill(random);
    for (int number = 0; number < 60; ++number) {
      std::string sql;
      const std::mt19937 before = random;
      const auto plan = [&] {
        query_pair made = random_query(random = before).make(number % 7);
        sql = made.sql;
        return ovhost::statement(std::move(made.plan));
      };
      const auto run = [&](const ovhost::statement& statement) {
        std::vector<std::string> spelled;
        for (const row& each : statement.rows(reading.context())) spelled.push_back(spell_signed(each));
        return spelled;
      };
      std::vector<std::string> ours = compare_policies(plan, run, [&](std::size_t policy, const auto& found) {
        ADD_FAILURE() << testing::PrintToString(found) << " with policy " << policy << ", seed " << seed << ": " << sql;
      });
      std::vector<std::string> theirs = ask_sqlite(sql);
      std::sort(ours.begin(), ours.end());
      std::sort(theirs.begin(), theirs.end());
      ASSERT_EQ(ours, theirs) << "seed " << seed << ", filling " << filling << ", " << number << ": " << sql;
    }
  }
}

}  // namespace
}  // namespace tests
