// The state behind a context's handle: what a reader needs of its database, and what it has been lent.
#ifndef OVCOREDB_INTERFACE_CONTEXT_STATE_HPP_
#define OVCOREDB_INTERFACE_CONTEXT_STATE_HPP_

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "ovcoredb/database/database_state.hpp"
#include "ovcoredb/interface/column_cache.hpp"
#include "ovcoredb/interface/iterator_pool.hpp"
#include "ovcoredb/interface/slots.hpp"
#include "ovcoredb/storage/own_lines.hpp"

namespace ovcoredb {

// States outlive their contexts: the next context may be another thread's than the one that allocated the state. So a
// state, and what it writes while it serves, lies in lines of its own.
class alignas(line_size) context_state final : public write_listener {
 public:
  std::atomic<std::uint64_t> handle{0};  // 0: not open
  database_state* database = nullptr;    // null: not open
  iterator_pool iterators{*this};
  column_cache columns;

  range_end scratch_end;                                              // where an iterator that is being opened begins
  std::u16string scratch_units;                                       // a text on its way to base form
  std::vector<std::uint8_t, own_lines_allocator<std::uint8_t>> lent;  // the last block; keeps its memory, so only grows
  std::uint64_t generation = 0;

  void before_write() override {
    columns.clear();
    iterators.reset();
  }
};

inline context_state* find_context(std::uint64_t handle) { return find_open(context_slots, handle); }

// Throws: std::runtime_error when too many are open, std::bad_alloc.
context_state& open_context(database_state& database);

// Does nothing for a handle that is not open.
void close_context(std::uint64_t handle);

}  // namespace ovcoredb

#endif  // OVCOREDB_INTERFACE_CONTEXT_STATE_HPP_
