#ifndef BENCH_OV_BENCH_MEMORY_HPP_
#define BENCH_OV_BENCH_MEMORY_HPP_

#include "sample.hpp"
#include "shape.hpp"

namespace bench {

// By how many kilobytes the resident memory of a process of its own rises at most while this library runs the shape
// once; the data are there before. Throws std::runtime_error when the process fails.
double peak_kilobytes(const shape& of, const sample& data);

}  // namespace bench

#endif  // BENCH_OV_BENCH_MEMORY_HPP_
