// An in-memory SQLite database beside the one under test, and results in a form that both can be brought to.
#ifndef TESTS_QUERIES_SQLITE_TABLE_HPP_
#define TESTS_QUERIES_SQLITE_TABLE_HPP_

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

#include "ov_sql_executor/values/value.hpp"

namespace tests {

// A row as text: integers and bools as numbers, doubles with all their digits, texts quoted.
using result = std::vector<std::string>;

std::string show_row(const ov::sql_executor::row& values);

class sqlite_database {
 public:
  sqlite_database();

  // Runs a statement and returns its rows. A failure is a test failure that shows the statement.
  result query(const std::string& sql);

 private:
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle_;
};

}  // namespace tests

#endif  // TESTS_QUERIES_SQLITE_TABLE_HPP_
