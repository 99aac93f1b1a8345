// The entries of an index in order, in blocks of a few hundred, so that a step is a step in an array. A directory of
// the blocks' first entries and counts, small enough to stay in the cache, finds the block of an entry.
//
//    directory    fence 1 ------> fence 2 ------> fence 3
//                    |               |               |
//                 [a b c . .] <-> [d e f g .] <-> [h i . . .]
//
// A fence is an entry of its block and not above any other of it. Only the fence of the first block may be above some,
// since no search needs it.
#ifndef OVCOREDB_INDEX_ENTRY_BLOCKS_HPP_
#define OVCOREDB_INDEX_ENTRY_BLOCKS_HPP_

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ovcoredb/index/block_chain.hpp"
#include "ovcoredb/index/entry_order.hpp"
#include "ovcoredb/index/index_entry.hpp"
#include "ovcoredb/index/interpolation_search.hpp"

namespace ovcoredb {

// Before one of the entries, or after the last: then `offset` is the last block's count. Null block: there are no
// entries. Valid until an entry is inserted or erased.
struct entry_position {
  const entry_block* in = nullptr;
  std::uint32_t offset = 0;

  bool operator==(const entry_position&) const = default;
  bool at_end() const { return in == nullptr || offset == in->count; }
  const index_entry& operator*() const {
    assert(!at_end());
    return in->entries[offset];
  }
};

class entry_blocks {
 public:
  // The order is lent.
  explicit entry_blocks(const entry_order& order) : order_(order) {}

  entry_position begin() const { return {blocks_.find(blocks_.first()), 0}; }
  entry_position end() const {
    const entry_block* const last = blocks_.find(blocks_.last());
    return {last, last == nullptr ? 0 : last->count};
  }
  const entry_block* next(const entry_block& of) const { return blocks_.find(of.next); }          // null: none
  const entry_block* previous(const entry_block& of) const { return blocks_.find(of.previous); }  // null: none

  // The first entry for which `before` is false. Requires: it is true for the first entries, up to about this word, and
  // false for the others.
  template <class Before>
  entry_position find(std::uint64_t word, const Before& before) const {
    if (directory_.empty()) return {};
    const place found = locate(word, before);
    const entry_block& in = blocks_[found.number];
    if (found.offset < directory_[found.fence].count || in.next == no_block) return {&in, found.offset};
    return {&blocks_[in.next], 0};
  }

  // Requires: the entry is not there. When it throws, nothing has changed.
  void insert(const index_entry& entry);

  // Requires: the entry is there.
  void erase(const index_entry& entry);

 private:
  struct fence {
    index_entry first;
    std::uint32_t number;  // of the block
    std::uint32_t count;   // the block's; here, so that a search need not wait for another line of the block
  };

  // Where an entry belongs. The offset may be the block's count although other blocks follow.
  struct place {
    std::size_t fence;     // in the directory
    std::uint32_t number;  // of the block
    std::uint32_t offset;
  };

  // Requires: there are blocks.
  template <class Before>
  place locate(std::uint64_t word, const Before& before) const {
    assert(!directory_.empty());
    const std::size_t count = directory_.size();
    const word_range fences{directory_.front().first.word(), directory_.back().first.word()};
    std::size_t found = partition_point_near(count, 1 + interpolate(count - 1, fences, word),
                                             [&](std::size_t each) { return before(directory_[each].first); });
    if (found != 0) --found;
    const fence& at = directory_[found];
    const entry_block& in = blocks_[at.number];
    const bool is_last = found + 1 == count;
    const word_range held{at.first.word(),
                          is_last ? in.entries[at.count - 1].word() + 1 : directory_[found + 1].first.word()};
    const std::size_t offset = partition_point_near(at.count, interpolate(at.count, held, word),
                                                    [&](std::size_t each) { return before(in.entries[each]); });
    return {found, at.number, static_cast<std::uint32_t>(offset)};
  }

  place locate(const index_entry& entry) const;
  place locate_held(const index_entry& entry) const;
  void add_block(std::size_t at, index_entry entry);
  void split(const place& full);
  void remove_block(std::size_t at);

  const entry_order& order_;
  block_chain blocks_;
  std::vector<fence> directory_;  // one for each block, in order
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_ENTRY_BLOCKS_HPP_
