// The blocks of an index: arrays of entries, linked in index order. They lie in one growing array and are named by
// their numbers there, since they move when it grows. Removed blocks are used again.
#ifndef OVCOREDB_INDEX_BLOCK_CHAIN_HPP_
#define OVCOREDB_INDEX_BLOCK_CHAIN_HPP_

#include <cstdint>

#include "ovcoredb/index/index_entry.hpp"
#include "ovcoredb/storage/raw_array.hpp"

namespace ovcoredb {

inline constexpr std::uint32_t block_capacity = 255;
inline constexpr std::uint32_t no_block = ~std::uint32_t{0};

struct entry_block {
  std::uint32_t next;  // no_block at either end
  std::uint32_t previous;
  std::uint32_t count;  // at least 1
  index_entry entries[block_capacity];

  void insert(std::uint32_t offset, const index_entry& entry);  // requires: it is not full
  void erase(std::uint32_t offset);                             // requires: it keeps an entry
};

class block_chain {
 public:
  std::uint32_t first() const { return first_; }
  std::uint32_t last() const { return last_; }

  const entry_block& operator[](std::uint32_t number) const { return blocks_[number]; }
  entry_block& operator[](std::uint32_t number) { return blocks_[number]; }

  // Null for no_block.
  const entry_block* find(std::uint32_t number) const { return number == no_block ? nullptr : &blocks_[number]; }

  // Links a new block that holds one entry after another block, or after no_block at the beginning. Returns its
  // number. Moves blocks, which is why the entry is copied. Throws: std::bad_alloc, and then has not changed.
  std::uint32_t insert_after(std::uint32_t previous, index_entry entry);

  void remove(std::uint32_t number);

 private:
  std::uint32_t take_unused();

  raw_array<entry_block> blocks_;
  std::uint32_t first_ = no_block;
  std::uint32_t last_ = no_block;
  std::uint32_t unused_ = no_block;  // the first removed block; linked by `next`
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_BLOCK_CHAIN_HPP_
