#include "measure.hpp"

#include <algorithm>
#include <ctime>
#include <stdexcept>

#include "allocations.hpp"
#include "engines.hpp"

namespace bench {

namespace {

constexpr int repetitions = 5;
constexpr double least_seconds = 0.02;  // of one timing; shorter runs are repeated

// Of processor time: what other programs take from the machine does not count.
double now() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

class timed_engine {
 public:
  explicit timed_engine(prepared run) : run_(std::move(run)) {}

  // Warms up, and finds how many runs one timing takes.
  outcome start() {
    const std::uint64_t allocations_before = allocations();
    const double begin = now();
    const outcome result = run_();
    const double took = std::max(now() - begin, 1e-7);
    allocations_ = static_cast<double>(allocations() - allocations_before);
    runs_ = static_cast<int>(std::clamp(least_seconds / took, 1.0, 10'000.0));
    return result;
  }

  void measure() {
    const double begin = now();
    for (int i = 0; i < runs_; ++i) run_();
    seconds_.push_back((now() - begin) / runs_);
  }

  const std::vector<double>& seconds() const { return seconds_; }
  double allocations_of_a_run() const { return allocations_; }

 private:
  prepared run_;
  int runs_ = 1;
  double allocations_ = 0;
  std::vector<double> seconds_;
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

std::vector<double> ratios(const std::vector<double>& of, const std::vector<double>& to) {
  std::vector<double> all;
  for (std::size_t i = 0; i < of.size(); ++i) all.push_back(of[i] / to[i]);
  return all;
}

}  // namespace

measurement measure(const shape& of, const sample& data, const duckdb_database* duckdb) {
  timed_engine ov(prepare_ov(of, data));
  timed_engine sqlite(prepare_sqlite(of, data));
  timed_engine floor(prepare_floor(of, data));
  const outcome expected = ov.start();
  if (sqlite.start() != expected) throw std::runtime_error(of.name + ": the engines' results differ");
  floor.start();
  std::optional<timed_engine> other;
  if (duckdb != nullptr && other.emplace(duckdb->prepare(of, data)).start().rows != expected.rows) {
    throw std::runtime_error(of.name + ": DuckDB has another number of rows");  // it rounds where others truncate
  }
  for (int i = 0; i < repetitions; ++i) {
    ov.measure();
    sqlite.measure();
    floor.measure();
    if (other) other->measure();
  }
  const double steps = static_cast<double>(of.steps(data.rows()));
  const std::vector<double> against = ratios(sqlite.seconds(), ov.seconds());
  const auto [least, greatest] = std::minmax_element(against.begin(), against.end());
  measurement result = {.shape = of.name,
                        .rows = data.rows(),
                        .ov = median(ov.seconds()) * 1e9 / steps,
                        .sqlite = median(sqlite.seconds()) * 1e9 / steps,
                        .floor = median(floor.seconds()) * 1e9 / steps,
                        .ratio = median(against),
                        .least_ratio = *least,
                        .greatest_ratio = *greatest,
                        .over_floor = median(ratios(ov.seconds(), floor.seconds())),
                        .allocations = ov.allocations_of_a_run() / steps,
                        .duckdb = std::nullopt,
                        .duckdb_ratio = std::nullopt};
  if (other) {
    result.duckdb = median(other->seconds()) * 1e9 / steps;
    result.duckdb_ratio = median(ratios(other->seconds(), ov.seconds()));
  }
  return result;
}

}  // namespace bench
