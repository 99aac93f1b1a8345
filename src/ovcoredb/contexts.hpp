// The contexts of the process and their iterators, found by handle without a lock. A handle that is stale or invented
// is not found.
//
//    context handle    63 ... 12 generation of the slot (from 1) | 11 ... 0 slot
//    iterator handle   63 ... 28 generation | 27 ... 12 place in the context | 11 ... 0 slot of the context
#ifndef OVCOREDB_CONTEXTS_HPP_
#define OVCOREDB_CONTEXTS_HPP_

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "ovcoredb/ordered_index.hpp"

namespace ovcoredb {

struct database_state;

inline constexpr std::size_t context_limit = 4096;
inline constexpr std::size_t iterator_limit = 65536;  // per context

struct iterator_state {
  std::uint64_t handle = 0;  // 0: not in use
  const ordered_index* index = nullptr;
  ordered_index::position next{};  // descending: the entry before it is the next one
  ordered_index::position stop{};
  range_end last;
  unsigned unchecked_after = 0;  // steps that compare with `last`; then `stop` is the end of the range
  bool descending = false;
};

// A slot's state stays allocated when its context ends, for the next one.
struct context_state {
  std::atomic<std::uint64_t> handle{0};  // 0: not in use
  database_state* database = nullptr;
  std::uint64_t generation = 0;
  std::uint64_t iterator_generation = 0;
  std::vector<iterator_state> iterators;
  std::vector<std::uint16_t> free_iterators;  // places
  range_end first;                            // scratch: where an iterator that is being opened starts
  std::u16string units;                       // scratch
  std::vector<std::uint8_t> block;            // the result lent last

  iterator_state* open_iterator();  // null: too many
  void close_iterator(iterator_state& iterator);
  void close_all_iterators();
};

extern std::atomic<context_state*> context_slots[context_limit];

inline context_state* find_context(std::uint64_t handle) {
  context_state* const found = context_slots[handle % context_limit].load(std::memory_order_acquire);
  if (found == nullptr || handle == 0 || found->handle.load(std::memory_order_relaxed) != handle) return nullptr;
  return found;
}

struct found_iterator {
  context_state* context = nullptr;
  iterator_state* iterator = nullptr;  // null: no such iterator
};

inline found_iterator find_iterator(std::uint64_t handle) {
  context_state* const context = context_slots[handle % context_limit].load(std::memory_order_acquire);
  if (context == nullptr) return {};
  const std::size_t place = handle / context_limit % iterator_limit;
  if (place >= context->iterators.size() || handle == 0) return {};
  iterator_state* const iterator = &context->iterators[place];
  return {context, iterator->handle == handle ? iterator : nullptr};
}

context_state& open_context(database_state& database);  // throws std::runtime_error
void close_context(std::uint64_t handle);

}  // namespace ovcoredb

#endif  // OVCOREDB_CONTEXTS_HPP_
