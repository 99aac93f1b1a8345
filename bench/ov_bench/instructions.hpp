#ifndef BENCH_OV_BENCH_INSTRUCTIONS_HPP_
#define BENCH_OV_BENCH_INSTRUCTIONS_HPP_

#include <cstdint>
#include <string>

#include "sample.hpp"
#include "shape.hpp"

namespace bench {

// Runs a shape on one engine ("ov", "sqlite", "floor") once to warm up and once to be counted. Throws
// std::runtime_error for another engine.
void run_counted(const shape& of, const sample& data, const std::string& engine);

// The instructions of that second run, counted by callgrind in a process of its own. Throws std::runtime_error when
// valgrind is missing or fails.
std::uint64_t count_instructions(const std::string& shape, std::size_t rows, const std::string& engine);

}  // namespace bench

#endif  // BENCH_OV_BENCH_INSTRUCTIONS_HPP_
