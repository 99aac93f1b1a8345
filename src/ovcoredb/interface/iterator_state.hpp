// The state behind an iterator's handle.
#ifndef OVCOREDB_INTERFACE_ITERATOR_STATE_HPP_
#define OVCOREDB_INTERFACE_ITERATOR_STATE_HPP_

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "ovcoredb/index/range_cursor.hpp"
#include "ovcoredb/interface/slots.hpp"
#include "ovcoredb/storage/own_lines.hpp"
#include "ovcoredb/storage/place_directory.hpp"

namespace ovcoredb {

struct alignas(line_size) iterator_state {
  std::atomic<std::uint64_t> handle{0};  // 0: not open

  place_run run;  // that the object handed out last belongs to, by number; kept for the next range
  range_cursor cursor;

  context_state* owner = nullptr;
  std::uint64_t generation = 0;
  std::size_t slot = 0;
};

inline iterator_state* find_iterator(std::uint64_t handle) { return find_open(iterator_slots, handle); }

}  // namespace ovcoredb

#endif  // OVCOREDB_INTERFACE_ITERATOR_STATE_HPP_
