// Random queries over two small tables, as a plan and as SQL that means the same.
#ifndef TESTS_QUERIES_RANDOM_QUERY_HPP_
#define TESTS_QUERIES_RANDOM_QUERY_HPP_

#include <random>
#include <string>
#include <vector>

#include "ovhost/plans.hpp"
#include "ovhost/query.hpp"

namespace tests {

// A column of a query: how a plan reads it, and its name in SQL, which no other column has.
struct query_column {
  ovhost::expression read;
  std::string name;
  bool is_text;
};

// A query whose rows are the columns. SQL and plan may yield them in different orders.
struct query_pair {
  ovhost::plan plan;
  std::string sql;
  std::vector<query_column> columns;
};

// Tables "r" and "s", each with columns id, a and b (int64, NULLs and duplicates but for id) and t (text), and with
// indexes "by_id" (unique, descending), "by_a" and "by_b_t".
class random_query {
 public:
  explicit random_query(std::mt19937& random) : random_(random) {}

  // A query of about that many steps, with its columns projected.
  query_pair make(int steps);

 private:
  query_pair relation(int steps, const std::vector<query_column>& outer);
  query_pair scanned(const std::vector<query_column>& outer);
  query_pair filtered(query_pair of, const std::vector<query_column>& outer);
  query_pair extended(query_pair of, const std::vector<query_column>& outer);
  query_pair grouped(query_pair of);
  query_pair limited(query_pair of);
  query_pair joined(int steps, const std::vector<query_column>& outer);
  query_pair full_joined(int steps, const std::vector<query_column>& outer);
  query_pair united(query_pair of, const std::vector<query_column>& outer);

  // An expression both ways.
  struct both_ways {
    ovhost::expression plan;
    std::string sql;
  };
  both_ways condition(const std::vector<query_column>& columns, int depth = 2);
  both_ways comparison(const std::vector<query_column>& columns);
  both_ways number(const std::vector<query_column>& columns, int depth = 2);
  both_ways text(const std::vector<query_column>& columns);
  const query_column* pick(const std::vector<query_column>& columns, bool is_text);

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  std::string fresh(const char* prefix) { return prefix + std::to_string(++names_); }

  std::mt19937& random_;
  ovhost::query query_;
  int names_ = 0;
};

}  // namespace tests

#endif  // TESTS_QUERIES_RANDOM_QUERY_HPP_
