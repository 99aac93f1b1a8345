#ifndef BENCH_OV_BENCH_SQLITE_DATABASE_HPP_
#define BENCH_OV_BENCH_SQLITE_DATABASE_HPP_

#include <sqlite3.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace bench {

// An SQLite database in memory.
class sqlite_database {
 public:
  sqlite_database() {
    sqlite3* opened = nullptr;
    const int status = sqlite3_open(":memory:", &opened);
    database_.reset(opened);
    if (status != SQLITE_OK) throw std::runtime_error("SQLite: the database did not open");
  }

  sqlite3* get() const { return database_.get(); }

  void execute(const std::string& statement) {
    if (sqlite3_exec(get(), statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(get()) + " in " + statement);
    }
  }

 private:
  struct closer {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
  };
  std::unique_ptr<sqlite3, closer> database_;
};

class sqlite_statement {
 public:
  sqlite_statement(sqlite3* database, const std::string& text) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database, text.c_str(), -1, &prepared, nullptr) != SQLITE_OK) {
      throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(database) + " in " + text);
    }
    statement_.reset(prepared);
  }

  sqlite3_stmt* get() const { return statement_.get(); }

 private:
  struct finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, finalizer> statement_;
};

}  // namespace bench

#endif  // BENCH_OV_BENCH_SQLITE_DATABASE_HPP_
