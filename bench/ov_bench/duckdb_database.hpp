// DuckDB, out of its shared library, which no package of the system has: it is loaded when it is asked for.
#ifndef BENCH_OV_BENCH_DUCKDB_DATABASE_HPP_
#define BENCH_OV_BENCH_DUCKDB_DATABASE_HPP_

#include <memory>
#include <string>

#include "engines.hpp"
#include "sample.hpp"

namespace bench {

class duckdb_library;

// A DuckDB database in memory with the sample's tables, copied out of its SQLite database. It uses one thread, as the
// other engines do, and divides integers as SQL does elsewhere.
class duckdb_database {
 public:
  // Throws std::runtime_error if the file is not such a library, or a table cannot be copied.
  duckdb_database(const std::string& library_file, const sample& data);
  ~duckdb_database();
  duckdb_database(const duckdb_database&) = delete;
  duckdb_database& operator=(const duckdb_database&) = delete;

  // Prepared once, or for each run where the shape says so; every value of every row is read. The result must not
  // outlive the database.
  prepared prepare(const shape& of, const sample& data) const;

 private:
  explicit duckdb_database(const std::string& library_file);  // empty

  void execute(const std::string& statement);
  void copy_table(const std::string& name, const sample& data);

  std::unique_ptr<const duckdb_library> library_;
  void* database_ = nullptr;
  void* connection_ = nullptr;
};

}  // namespace bench

#endif  // BENCH_OV_BENCH_DUCKDB_DATABASE_HPP_
