// The states behind the handles of the process, in slots that are read without a lock.
//
//    context handle    63 ... 12 generation of the slot (from 1) | 11 ... 0 slot
//    iterator handle   63 ... 20 generation of the slot (from 1) | 19 ... 0 slot
//
// Each use of a slot has its own generation, so that a handle that is stale or invented is not found. A state stays
// allocated when its handle is closed, for the next use: whoever holds an old handle can still look.
#ifndef OVCOREDB_INTERFACE_SLOTS_HPP_
#define OVCOREDB_INTERFACE_SLOTS_HPP_

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace ovcoredb {

class context_state;
struct iterator_state;

inline constexpr std::size_t context_limit = 4096;      // in the process; slot 0 is not used
inline constexpr std::size_t iterator_limit = 1 << 20;  // in the process; slot 0 is not used

extern std::atomic<context_state*> context_slots[context_limit];
extern std::atomic<iterator_state*> iterator_slots[iterator_limit];

// Null: the handle is not open.
template <class State, std::size_t limit>
State* find_open(const std::atomic<State*> (&slots)[limit], std::uint64_t handle) {
  State* const found = slots[handle % limit].load(std::memory_order_acquire);
  if (found == nullptr || found->handle.load(std::memory_order_relaxed) != handle) return nullptr;
  return found;
}

}  // namespace ovcoredb

#endif  // OVCOREDB_INTERFACE_SLOTS_HPP_
