#include "ovcoredb/index/entry_blocks.hpp"

#include <algorithm>

namespace ovcoredb {

void entry_blocks::insert(const index_entry& entry) {
  if (directory_.empty()) return add_block(0, entry);
  place at = locate(entry);
  if (blocks_[at.number].count == block_capacity) {
    const bool appends = at.number == blocks_.last() && at.offset == block_capacity;
    if (appends) return add_block(directory_.size(), entry);  // so that an ascending load fills its blocks
    split(at);
    at = locate(entry);
  }
  blocks_[at.number].insert(at.offset, entry);
  ++directory_[at.fence].count;
}

void entry_blocks::erase(const index_entry& entry) {
  const place at = locate_held(entry);
  entry_block& in = blocks_[at.number];
  assert(at.offset < in.count && in.entries[at.offset] == entry);
  if (in.count == 1) return remove_block(at.fence);
  in.erase(at.offset);
  directory_[at.fence].count = in.count;
  directory_[at.fence].first = in.entries[0];
}

entry_blocks::place entry_blocks::locate(const index_entry& entry) const {
  return locate(entry.word(), [&](const index_entry& each) { return order_.less(each, entry); });
}

// An entry that begins a block is located at the end of the block before.
entry_blocks::place entry_blocks::locate_held(const index_entry& entry) const {
  const place at = locate(entry);
  if (at.offset < blocks_[at.number].count) return at;
  return {at.fence + 1, directory_[at.fence + 1].number, 0};
}

// Adds a block of one entry, which becomes the fence at that place in the directory.
void entry_blocks::add_block(std::size_t at, index_entry entry) {
  if (directory_.size() == directory_.capacity()) directory_.reserve(2 * directory_.size() + 1);
  const std::uint32_t number = blocks_.insert_after(at == 0 ? no_block : directory_[at - 1].number, entry);
  directory_.insert(directory_.begin() + static_cast<std::ptrdiff_t>(at), {entry, number, 1});
}

// Moves the upper half of a full block into a new one.
void entry_blocks::split(const place& full) {
  constexpr std::uint32_t kept = block_capacity / 2;
  add_block(full.fence + 1, blocks_[full.number].entries[kept]);
  entry_block& in = blocks_[full.number];
  entry_block& added = blocks_[directory_[full.fence + 1].number];
  std::copy(in.entries + kept, in.entries + in.count, added.entries);
  added.count = in.count - kept;
  in.count = kept;
  directory_[full.fence] = {in.entries[0], full.number, in.count};
  directory_[full.fence + 1].count = added.count;
}

void entry_blocks::remove_block(std::size_t at) {
  blocks_.remove(directory_[at].number);
  directory_.erase(directory_.begin() + static_cast<std::ptrdiff_t>(at));
}

}  // namespace ovcoredb
