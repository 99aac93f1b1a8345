#ifndef BENCH_OV_BENCH_ALLOCATIONS_HPP_
#define BENCH_OV_BENCH_ALLOCATIONS_HPP_

#include <cstdint>

namespace bench {

// How often this process has called operator new so far; the libraries it uses included, SQLite's own allocator not.
std::uint64_t allocations();

}  // namespace bench

#endif  // BENCH_OV_BENCH_ALLOCATIONS_HPP_
