// This library over the embedded core, SQLite in memory, hand-written loops over the core's interface and, if it is
// there, DuckDB in memory, on the same data, in turns, in one process.
#include <fnmatch.h>

#include <cstdio>
#include <exception>
#include <optional>

#include "duckdb_database.hpp"
#include "engines.hpp"
#include "instructions.hpp"
#include "measure.hpp"
#include "memory.hpp"
#include "options.hpp"
#include "ov_sql_executor/errors/db_exception.hpp"
#include "report.hpp"
#include "threads.hpp"

namespace {

std::vector<bench::shape> chosen_shapes(const std::string& pattern) {
  std::vector<bench::shape> chosen;
  for (const auto& family :
       {bench::reading_shapes(), bench::lookup_and_join_shapes(), bench::trip_shapes(), bench::collecting_shapes()}) {
    for (const bench::shape& each : family) {
      if (fnmatch(pattern.c_str(), each.name.c_str(), FNM_EXTMATCH) == 0) chosen.push_back(each);
    }
  }
  if (chosen.empty()) throw bench::usage_error("no shape is called '" + pattern + "'");
  return chosen;
}

void run_one(const bench::options& wanted) {
  const bench::sample data(wanted.sizes.front());
  bench::run_counted(chosen_shapes(wanted.pattern).front(), data, wanted.counted_engine);
}

void print_memory(const bench::options& wanted) {
  std::printf("%-22s %8s %12s %14s\n", "shape", "rows", "peak KiB", "bytes per step");
  for (const std::size_t rows : wanted.sizes) {
    const bench::sample data(rows);
    for (const bench::shape& each : chosen_shapes(wanted.pattern)) {
      const double risen = bench::peak_kilobytes(each, data);
      std::printf("%-22s %8zu %12.0f %14.1f\n", each.name.c_str(), rows, risen,
                  risen * 1024 / static_cast<double>(each.steps(rows)));
    }
  }
}

void print_threads(const bench::options& wanted) {
  std::printf("%-22s %8s   two threads/one, eight times\n", "shape", "rows");
  for (const std::size_t rows : wanted.sizes) {
    const bench::sample data(rows);
    for (const bench::shape& each : chosen_shapes(wanted.pattern)) {
      std::printf("%-22s %8zu", each.name.c_str(), rows);
      for (const double factor : bench::speed_of_two_threads(each, data)) std::printf(" %6.2f", factor);
      std::printf("\n");
    }
  }
}

void print_instructions(const std::vector<bench::shape>& shapes, std::size_t rows) {
  std::printf("\ninstructions per step at %zu rows\n%-22s %9s %9s %9s\n", rows, "shape", "ov", "sqlite", "floor");
  for (const bench::shape& each : shapes) {
    std::printf("%-22s", each.name.c_str());
    for (const char* engine : {"ov", "sqlite", "floor"}) {
      const auto counted = static_cast<double>(bench::count_instructions(each.name, rows, engine));
      std::printf(" %9.1f", counted / static_cast<double>(each.steps(rows)));
      std::fflush(stdout);
    }
    std::printf("\n");
  }
}

void run(const bench::options& wanted) {
  const std::vector<bench::shape> shapes = chosen_shapes(wanted.pattern);
  std::vector<bench::measurement> all;
  bench::print_heading(!wanted.duckdb_library.empty());
  for (const std::size_t rows : wanted.sizes) {
    const bench::sample data(rows);
    std::optional<bench::duckdb_database> duckdb;
    if (!wanted.duckdb_library.empty()) duckdb.emplace(wanted.duckdb_library, data);
    for (const bench::shape& each : shapes) {
      all.push_back(bench::measure(each, data, duckdb ? &*duckdb : nullptr));
      bench::print_line(all.back());
    }
  }
  bench::print_means(all);
  if (!wanted.csv_file.empty()) bench::write_csv(wanted.csv_file, all);
  if (!wanted.svg_file.empty()) bench::write_svg(wanted.svg_file, all);
  if (wanted.instructions) print_instructions(shapes, wanted.sizes.front());
}

}  // namespace

int main(int argument_count, char** arguments) {
  try {
    const bench::options wanted = bench::read_options({arguments + 1, arguments + argument_count});
    if (!wanted.counted_engine.empty()) {
      run_one(wanted);
    } else if (wanted.memory) {
      print_memory(wanted);
    } else if (wanted.threads) {
      print_threads(wanted);
    } else {
      run(wanted);
    }
    return 0;
  } catch (const bench::usage_error& error) {
    std::fprintf(stderr, "ov_bench: %s\n%s", error.what(), bench::usage);
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "ov_bench: %s\n", error.what());
    return 1;
  } catch (const db_util::db_exception& error) {
    std::fprintf(stderr, "ov_bench: a query failed with code %u\n", static_cast<unsigned>(error.code));
    return 1;
  }
}
