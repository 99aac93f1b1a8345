// operator new, counted and made to fail, in every form and also for the shared libraries. The core shim tells who
// asks; its own memory never runs out. One thread at a time.
#ifndef TESTS_RELIABILITY_FAILING_ALLOCATIONS_HPP_
#define TESTS_RELIABILITY_FAILING_ALLOCATIONS_HPP_

#include <cstdint>

#include "core_shim/core_shim.hpp"

namespace failing_allocations {

extern bool paused;         // what the host does for itself is not made to fail
extern std::int64_t alive;  // allocations that are not freed, made and freed outside of core and shim

// Makes the k-th allocation from now on (the next one is 1) in that place throw std::bad_alloc.
void fail(std::uint64_t k, core_shim::repeat how, core_shim::place in);

// Lets nothing fail any more. Returns how often something did.
std::uint64_t stop();

}  // namespace failing_allocations

#endif  // TESTS_RELIABILITY_FAILING_ALLOCATIONS_HPP_
