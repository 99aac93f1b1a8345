// Random tables, views and queries in SQL that this dialect and SQLite read alike.
#ifndef TESTS_OVSQL_RANDOM_SQL_HPP_
#define TESTS_OVSQL_RANDOM_SQL_HPP_

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace tests {

class random_sql {
 public:
  explicit random_sql(std::mt19937& random) : random_(random) {}

  // Statements that make the tables, their rows and views on them.
  std::vector<std::string> definitions();

  // Indexes on the tables, which must change no result.
  std::vector<std::string> indexes();

  // A query. is_ordered: its rows have one order only.
  struct query {
    std::string sql;
    bool is_ordered = false;
    std::vector<std::int64_t> parameters{};  // the values of :p1, :p2 ...
  };
  query make();

 private:
  enum class kind : std::uint8_t { integer, text, decimal, floating };
  // Aggregates of DISTINCT values: a sum of them goes with no others.
  enum class distinct : std::uint8_t { none, counts, sum };
  struct column {
    std::string sql;
    random_sql::kind kind;
  };
  using columns = std::vector<column>;

  // What an expression may read: columns, or group keys beside aggregates of the rows' columns.
  struct scope {
    random_sql::columns columns{};
    const scope* outer = nullptr;
    const scope* rows = nullptr;  // of groups
  };
  struct relation {
    std::string name;
    random_sql::columns columns;
  };
  struct select {
    std::string sql{};
    random_sql::columns columns{};  // of the result
    std::string order_key{};        // what the rows can be ordered by, besides these
    bool is_compound = false;       // UNION and the like
  };

  // ---- expressions: random_expressions.cpp
  std::string expression(kind of, const scope& in, int depth);
  std::string number(kind of, const scope& in, int depth);
  std::string any_kind(kind of, const scope& in, int depth);
  std::string aggregate(kind of, const scope& in, int depth);
  std::string scalar_query(kind of, const scope& in, int depth);
  std::string leaf(kind of, const scope& in);
  std::string literal(kind of);
  std::string parameter();
  std::string condition(const scope& in, int depth);
  std::string subquery_test(const scope& in, int depth);
  std::string comparison(kind of, const scope& in, int depth);
  std::string list(kind of, const scope& in, int count, int depth);

  // ---- queries: random_queries.cpp
  std::pair<std::string, scope> from(const scope* outer, int depth);
  std::pair<std::string, columns> source(int depth);
  std::string join(columns& all, const columns& added, const std::string& what, bool is_only);
  std::string where(const scope& in, int depth);
  select any_select(const scope* outer, int depth, const std::vector<kind>& wanted);
  select plain(const scope* outer, int depth, const std::vector<kind>& wanted);
  select grouped(const scope* outer, int depth, const std::vector<kind>& wanted);
  select united(const scope* outer, int depth, const std::vector<kind>& wanted);
  std::string order(const select& of, bool is_limited);
  std::vector<kind> some_kinds(int least = 1);
  static columns named(const std::string& alias, const columns& of);

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  bool chance(int percent) { return below(100) < percent; }
  template <class T>
  const T& pick(const std::vector<T>& of) {
    return of[static_cast<std::size_t>(below(static_cast<int>(of.size())))];
  }
  std::string word(std::initializer_list<const char*> of) { return pick(std::vector<const char*>(of)); }
  std::string fresh(const char* prefix) { return prefix + std::to_string(++names_); }
  kind any_kind();

  std::mt19937& random_;
  std::vector<relation> relations_;  // tables, views and common tables
  std::vector<std::int64_t> parameters_;
  bool takes_parameters_ = false;
  distinct distinct_ = distinct::none;  // of the SELECT that is made
  int most_tables_ = 3;                 // of a FROM
  int names_ = 0;
};

}  // namespace tests

#endif  // TESTS_OVSQL_RANDOM_SQL_HPP_
