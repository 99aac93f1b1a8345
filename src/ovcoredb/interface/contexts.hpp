// The contexts of the process and their iterators, found by handle without a lock. A handle that is stale or invented
// is not found.
//
//    context handle    63 ... 12 generation of the slot (from 1) | 11 ... 0 slot
//    iterator handle   63 ... 20 generation of the slot (from 1) | 19 ... 0 slot
#ifndef OVCOREDB_INTERFACE_CONTEXTS_HPP_
#define OVCOREDB_INTERFACE_CONTEXTS_HPP_

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ovcoredb/index/ordered_index.hpp"

namespace ovcoredb {

struct database_state;

inline constexpr std::size_t context_limit = 4096;      // slot 0 is not used
inline constexpr std::size_t iterator_limit = 1 << 20;  // in the process; slot 0 is not used
inline constexpr std::size_t iterators_of_a_context_limit = 65536;

struct context_state;

struct iterator_state {
  std::atomic<std::uint64_t> handle{0};  // 0: not in use

  // The entries that can be handed out without a further look: from `at` up to `limit`, by `step`.
  const index_entry* entries = nullptr;
  std::uint32_t at = 0;
  std::uint32_t limit = 0;
  std::uint32_t step = 1;  // or -1 modulo 2^32, to descend
  place_run run;           // that the object handed out last belongs to, by object number; kept for the next range

  const ordered_index::entries::block* in = nullptr;
  ordered_index::entries::position stop{};
  bool knows_end = false;  // `stop` is the end of the range, not of the index
  const ordered_index* index = nullptr;
  range_end last;

  context_state* owner = nullptr;
  std::uint64_t generation = 0;
  std::size_t slot = 0;

  bool descending() const { return step != 1; }
};

// Where the values of one column lie for consecutive objects: what a getter finds out it keeps for the next object.
struct column_run {
  std::uint64_t type_column_tag = 0;  // see name; 0 names nothing
  std::uint64_t first = 0;            // object number
  std::uint64_t count = 0;
  std::uint64_t row_of_first = 0;
  const column* values = nullptr;

  static std::uint64_t name(column_type type, std::uint32_t column, std::uint16_t tag) {
    return std::uint64_t{static_cast<std::uint8_t>(type)} << 48 | std::uint64_t{column} << 16 | tag;
  }
  std::uint64_t row_of(std::uint64_t number) const { return number - first + row_of_first; }
};

// A slot's state, with its iterators, stays allocated when its context ends, for the next one.
struct context_state {
  std::atomic<std::uint64_t> handle{0};  // 0: not in use
  database_state* database = nullptr;
  bool has_read = false;  // what it keeps of that can be wrong after a write
  std::array<column_run, 64> runs;
  std::uint64_t generation = 0;
  std::vector<std::unique_ptr<iterator_state>> iterators;
  std::vector<iterator_state*> free_iterators;
  range_end first;                  // scratch: where an iterator that is being opened starts
  std::u16string units;             // scratch
  std::vector<std::uint8_t> block;  // the result lent last

  iterator_state* open_iterator();  // null: too many
  void close_iterator(iterator_state& iterator);

  // Neighbours lie apart, and so do the first columns of two tables that are read in turns.
  column_run& run_of(std::uint32_t column, std::uint16_t tag) {
    return runs[(column + std::uint32_t{tag} * 17) % runs.size()];
  }

  // Forgets what a write makes wrong: positions in indexes and places of values.
  void before_write();

 private:
  bool add_iterator();
};

extern std::atomic<context_state*> context_slots[context_limit];
extern std::atomic<iterator_state*> iterator_slots[iterator_limit];

inline context_state* find_context(std::uint64_t handle) {
  context_state* const found = context_slots[handle % context_limit].load(std::memory_order_acquire);
  if (found == nullptr || found->handle.load(std::memory_order_relaxed) != handle) return nullptr;
  return found;
}

inline iterator_state* find_iterator(std::uint64_t handle) {
  iterator_state* const found = iterator_slots[handle % iterator_limit].load(std::memory_order_acquire);
  if (found == nullptr || found->handle.load(std::memory_order_relaxed) != handle) return nullptr;
  return found;
}

context_state& open_context(database_state& database);  // throws std::runtime_error
void close_context(std::uint64_t handle);

}  // namespace ovcoredb

#endif  // OVCOREDB_INTERFACE_CONTEXTS_HPP_
