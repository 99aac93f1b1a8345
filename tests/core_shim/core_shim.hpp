// A core in front of the core. A test program that links it defines every symbol of the C interface itself and hands
// each call on to the definition that it would have found otherwise. Calls of the metadata layer pass it, too. One
// thread at a time. With CORE_SHIM_ONLY_STEPS it leaves out orv_iterator_skip, as a core may.
#ifndef TESTS_CORE_SHIM_CORE_SHIM_HPP_
#define TESTS_CORE_SHIM_CORE_SHIM_HPP_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace core_shim {

// Forgets records and failures that are planned. Open iterators stay open.
void reset();

// Counts iterators opened and not freed since the program began, and frees of handles that were not open.
std::size_t open_iterators();
std::uint64_t wrong_frees();

// Says in whose code the program is: in the shim's, in that of the core after it, or anywhere else.
enum class place { elsewhere, shim, core };
place where();

enum class repeat { once, from_then_on };

// Makes the k-th call from now on (the next one is 1) give this status. Nothing is handed on, and nothing is written.
// With a name, only calls of that name count. Without one, all count but orv_iterator_free, which some callers survive
// only when it succeeds. A free that fails has freed the iterator all the same. Of calls that return a size, the status
// is the size; they count only by name.
void fail_call(std::uint64_t k, std::uint32_t status, repeat how = repeat::once);
void fail_call(std::string_view name, std::uint64_t k, std::uint32_t status, repeat how = repeat::once);

// Counts the calls that were made to fail since the last reset.
std::uint64_t failures();

// Returns the flags of the iterators opened since the last reset, in order.
const std::vector<std::uint32_t>& opening_flags();

}  // namespace core_shim

#endif  // TESTS_CORE_SHIM_CORE_SHIM_HPP_
