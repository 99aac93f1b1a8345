#ifndef BENCH_OV_BENCH_MEASURE_HPP_
#define BENCH_OV_BENCH_MEASURE_HPP_

#include <optional>
#include <string>
#include <vector>

#include "duckdb_database.hpp"
#include "sample.hpp"
#include "shape.hpp"

namespace bench {

// Times are in ns per step of the shape. A ratio is another engine's time over ours of the same repetition.
struct measurement {
  std::string shape;
  std::size_t rows = 0;
  double ov = 0;  // medians
  double sqlite = 0;
  double floor = 0;
  double ratio = 0;  // SQLite's time over ours: median, least and greatest
  double least_ratio = 0;
  double greatest_ratio = 0;
  double over_floor = 0;               // our time over the floor's
  double allocations = 0;              // per step
  std::optional<double> duckdb;        // median, where it was asked for
  std::optional<double> duckdb_ratio;  // its time over ours
};

// Runs the engines in turns, at least five times each, DuckDB if there is one. Throws std::runtime_error when our
// results and SQLite's differ, or when DuckDB has another number of rows.
measurement measure(const shape& of, const sample& data, const duckdb_database* duckdb);

}  // namespace bench

#endif  // BENCH_OV_BENCH_MEASURE_HPP_
