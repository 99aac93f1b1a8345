#ifndef TESTS_QUERIES_SQLITE_TABLE_HPP_
#define TESTS_QUERIES_SQLITE_TABLE_HPP_

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

#include "spelling.hpp"

namespace tests {

// An in-memory SQLite database beside the one under test.
class sqlite_database {
 public:
  sqlite_database() : handle_(nullptr, &sqlite3_close) {
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(":memory:", &handle), SQLITE_OK);
    handle_.reset(handle);
  }

  // Runs a statement and returns its rows, each spelled with all its numbers as int64 or double. A failure is a test
  // failure that shows the statement.
  std::vector<std::string> query(const std::string& sql) {
    sqlite3_stmt* raw = nullptr;
    const int status = sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &raw, nullptr);
    EXPECT_EQ(status, SQLITE_OK) << sqlite3_errmsg(handle_.get()) << " in " << sql;
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
    switch (sqlite3_column_type(statement, column)) {
      case SQLITE_NULL:
        return null();
      case SQLITE_INTEGER:
        return i(sqlite3_column_int64(statement, column));
      case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
      default:
        const std::string held = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        return text({held.begin(), held.end()});
    }
  }

  std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle_;
};

}  // namespace tests

#endif  // TESTS_QUERIES_SQLITE_TABLE_HPP_
