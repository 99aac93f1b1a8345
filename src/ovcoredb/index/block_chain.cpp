#include "ovcoredb/index/block_chain.hpp"

#include <algorithm>
#include <cassert>
#include <utility>

namespace ovcoredb {

void entry_block::insert(std::uint32_t offset, const index_entry& entry) {
  assert(count < block_capacity && offset <= count);
  std::copy_backward(entries + offset, entries + count, entries + count + 1);
  entries[offset] = entry;
  ++count;
}

void entry_block::erase(std::uint32_t offset) {
  assert(count > 1 && offset < count);
  std::copy(entries + offset + 1, entries + count, entries + offset);
  --count;
}

std::uint32_t block_chain::insert_after(std::uint32_t previous, index_entry entry) {
  const std::uint32_t number = take_unused();
  entry_block& added = blocks_[number];
  added.previous = previous;
  added.next = previous == no_block ? first_ : blocks_[previous].next;
  added.count = 1;
  added.entries[0] = entry;
  (added.previous == no_block ? first_ : blocks_[added.previous].next) = number;
  (added.next == no_block ? last_ : blocks_[added.next].previous) = number;
  return number;
}

std::uint32_t block_chain::take_unused() {
  if (unused_ == no_block) {
    blocks_.extend(1);
    return static_cast<std::uint32_t>(blocks_.size() - 1);
  }
  return std::exchange(unused_, blocks_[unused_].next);
}

void block_chain::remove(std::uint32_t number) {
  entry_block& removed = blocks_[number];
  (removed.previous == no_block ? first_ : blocks_[removed.previous].next) = removed.next;
  (removed.next == no_block ? last_ : blocks_[removed.next].previous) = removed.previous;
  removed.next = std::exchange(unused_, number);
}

}  // namespace ovcoredb
