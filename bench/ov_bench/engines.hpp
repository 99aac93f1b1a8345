// A shape made ready to run on each engine.
#ifndef BENCH_OV_BENCH_ENGINES_HPP_
#define BENCH_OV_BENCH_ENGINES_HPP_

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "sample.hpp"
#include "shape.hpp"

namespace bench {

// What a run yields, so that engines can be held against each other.
struct outcome {
  std::uint64_t rows = 0;
  std::uint64_t sum = 0;  // of the integers and of the lengths of the texts

  friend bool operator==(const outcome&, const outcome&) = default;
};

// Runs the whole shape once.
using prepared = std::function<outcome()>;

// The shape's statement, and what it is run with in turn, for a sample.
std::string sql_of(const shape& of, const sample& data);
std::vector<std::int64_t> parameters_of(const shape& of, const sample& data);

prepared prepare_ov(const shape& of, const sample& data);

// One plan, to be run on any context of the sample's, also on several at the same time.
using on_any_context = std::function<prepared(std::uint64_t context)>;
on_any_context prepare_ov_for_contexts(const shape& of, const sample& data);

prepared prepare_sqlite(const shape& of, const sample& data);
prepared prepare_floor(const shape& of, const sample& data);

}  // namespace bench

#endif  // BENCH_OV_BENCH_ENGINES_HPP_
