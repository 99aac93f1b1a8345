// A walk over a range of an index, ascending or descending.
#ifndef OVCOREDB_INDEX_RANGE_CURSOR_HPP_
#define OVCOREDB_INDEX_RANGE_CURSOR_HPP_

#include <cassert>
#include <cstdint>

#include "ovcoredb/index/ordered_index.hpp"

namespace ovcoredb {

// A range as a caller names it: the walk begins at the first key, which is the upper end of a descending one.
struct key_range {
  const std::uint8_t* first_key;
  const std::uint8_t* last_key;
  bool includes_first;
  bool includes_last;
  bool descending;
};

// Holds a batch: entries of one block that lie in the range and have not been taken.
//
//    ascending     block  [ taken | at_ ... batch ... | limit_ ... ]
//    descending    block  [ ... limit_ | ... batch ... at_ | taken ]
//
// Invariant: the entries at_, at_ + step_, ... before limit_ belong to the range. stop_ is the end of the range if
// knows_end_, else that of the index. Valid until an entry is inserted or erased.
class range_cursor {
 public:
  // Begins the walk before the first entry. False when a key is not well formed or does not fit the index; then the
  // cursor has to be opened again. `scratch` only saves an allocation. Throws: std::bad_alloc.
  bool open(const ordered_index& index, const key_range& range, range_end& scratch);

  // Whether it has been opened on this index last.
  bool walks(const ordered_index& index) const { return index_ == &index; }

  // Whether the batch has an entry.
  bool has_entry() const { return at_ != limit_; }

  // The next object's number. Requires: has_entry().
  std::uint64_t number() const {
    assert(has_entry());
    return entries_[at_].number();
  }

  void advance() {
    assert(has_entry());
    at_ += step_;
  }

  // Passes over at most so many entries. Returns how many there were; fewer only at the end of the range.
  std::uint64_t skip(std::uint64_t count);

  // Finds another batch. False at the end of the range, and then again. Requires: the batch is used up.
  bool find_batch() {
    assert(!has_entry());
    const entry_position at = in_block_of_next(position_of(at_));
    return at != stop_ && find_batch_from(at);
  }

 private:
  bool descending() const { return step_ != 1; }

  // The offset of the entry that comes next from a position in in_, and back.
  std::uint32_t entry_at(std::uint32_t offset) const { return descending() ? offset - 1 : offset; }
  entry_position position_of(std::uint32_t entry) const { return {in_, descending() ? entry + 1 : entry}; }

  // The same position, named by the block of the entry that comes next from there, if there is one.
  entry_position in_block_of_next(entry_position at) const {
    if (at.in == nullptr) return at;
    if (descending() && at.offset == 0) {
      const entry_block* const previous = index_->entries().previous(*at.in);
      return previous == nullptr ? at : entry_position{previous, previous->count};
    }
    if (!descending() && at.offset == at.in->count) {
      const entry_block* const next = index_->entries().next(*at.in);
      return next == nullptr ? at : entry_position{next, 0};
    }
    return at;
  }

  // Out of line, which keeps the end of a range that is known short.
  [[gnu::noinline]] bool find_batch_from(entry_position at);
  void begin_batch(entry_position at);
  std::uint32_t batch_limit();
  std::uint32_t check_few(std::uint32_t block_end);

  const index_entry* entries_ = nullptr;  // the entries of in_
  std::uint32_t at_ = 0;
  std::uint32_t limit_ = 0;
  std::uint32_t step_ = 1;  // or -1 modulo 2^32, to descend
  const entry_block* in_ = nullptr;
  entry_position stop_{};
  bool knows_end_ = false;
  const ordered_index* index_ = nullptr;
  range_end last_;  // where the range ends
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_RANGE_CURSOR_HPP_
