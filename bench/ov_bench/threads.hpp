#ifndef BENCH_OV_BENCH_THREADS_HPP_
#define BENCH_OV_BENCH_THREADS_HPP_

#include <vector>

#include "sample.hpp"
#include "shape.hpp"

namespace bench {

// How many times as fast two threads with a context each are together as one of them alone: 2 if they share nothing.
// Measured eight times with new threads, since it may depend on where in memory lies what they use.
std::vector<double> speed_of_two_threads(const shape& of, const sample& data);

}  // namespace bench

#endif  // BENCH_OV_BENCH_THREADS_HPP_
