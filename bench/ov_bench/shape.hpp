// What is measured: one query as a plan, as SQL, and as the loop over the core's interface that any executor needs.
#ifndef BENCH_OV_BENCH_SHAPE_HPP_
#define BENCH_OV_BENCH_SHAPE_HPP_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core_loop.hpp"
#include "ovhost/plans/plans.hpp"
#include "ovhost/plans/query.hpp"
#include "sample.hpp"

namespace bench {

using floor_loop = std::function<std::uint64_t(core_loop&, std::int64_t parameter)>;

// A floor that reads some columns of every item: the numbers' sum and the texts' units.
floor_loop reads(std::vector<std::string> numbers, std::vector<std::string> texts = {}, std::size_t passes = 1);

// The same for another table.
floor_loop reads_of(const std::string& table, std::vector<std::string> numbers, std::vector<std::string> texts = {},
                    std::size_t passes = 1);

struct shape {
  std::string name;
  std::function<ovhost::plan(ovhost::query&, std::size_t rows)> make;
  std::string sql;  // "$rows" stands for the number of rows

  // The core calls that the query needs, and the work on what they give; returns what it found.
  floor_loop floor;

  // Parameter 0 of each run; none: one run without a parameter.
  std::function<std::vector<std::int64_t>(std::size_t rows)> parameters = {};

  // For a shape that plans before each run: makes the plan again from names that were looked up before, so that what is
  // measured is planning and not the host's search for names. SQLite prepares its statement each time.
  std::function<std::function<ovhost::plan()>(ovhost::query&)> make_again = {};

  // Whether our rows are looked at where they lie, instead of being handed out.
  bool with_cursor = false;

  // What the time is divided by: input rows, or lookups.
  std::function<std::size_t(std::size_t rows)> steps = [](std::size_t rows) { return rows; };
};

std::vector<shape> reading_shapes();
std::vector<shape> lookup_and_join_shapes();
std::vector<shape> trip_shapes();        // joins along references, self-joins
std::vector<shape> collecting_shapes();  // grouping, ordering, limits, unions

}  // namespace bench

#endif  // BENCH_OV_BENCH_SHAPE_HPP_
