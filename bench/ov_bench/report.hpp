#ifndef BENCH_OV_BENCH_REPORT_HPP_
#define BENCH_OV_BENCH_REPORT_HPP_

#include <string>
#include <vector>

#include "measure.hpp"

namespace bench {

void print_heading(bool has_duckdb);
void print_line(const measurement& of);
// Geometric means over the shapes of each size.
void print_means(const std::vector<measurement>& all);

// Columns shape,rows,engine,ns_per_row with the engines ov, sqlite, floor and, if measured, duckdb. Throws
// std::runtime_error when the file cannot be written.
void write_csv(const std::string& file, const std::vector<measurement>& all);

// The ratios to SQLite as a bar chart, by gnuplot. Throws std::runtime_error when that fails.
void write_svg(const std::string& file, const std::vector<measurement>& all);

}  // namespace bench

#endif  // BENCH_OV_BENCH_REPORT_HPP_
