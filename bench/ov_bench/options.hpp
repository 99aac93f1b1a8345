#ifndef BENCH_OV_BENCH_OPTIONS_HPP_
#define BENCH_OV_BENCH_OPTIONS_HPP_

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

struct options {
  std::vector<std::size_t> sizes = {10'000, 100'000, 1'000'000};
  std::string pattern = "*";   // of shape names, with shell wildcards
  std::string csv_file;        // empty: none
  std::string svg_file;        // empty: none
  std::string duckdb_library;  // DuckDB's shared library, to be measured as well; empty: none
  bool memory = false;         // measure the peak memory of a run instead of times
  bool instructions = false;   // count them under callgrind as well
  bool threads = false;        // measure two threads against one instead of times
  std::string counted_engine;  // what this process runs once, itself under callgrind; empty otherwise
};

class usage_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

extern const char* const usage;

options read_options(const std::vector<std::string>& words);

}  // namespace bench

#endif  // BENCH_OV_BENCH_OPTIONS_HPP_
