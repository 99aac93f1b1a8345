// The entries of an index in order, in blocks of a few hundred that lie side by side: a step is a step in an array. An
// array of the blocks' first entries and counts, which is small enough to stay in the cache, finds the block of an
// entry.
//
//    directory    fence 1 ------> fence 2 ------> fence 3
//                    |               |               |
//                 [a b c . .] <-> [d e f g .] <-> [h i . . .]
//
// A fence is an entry of its block and not above any other of it, except in the first block, whose fence nobody needs.
#ifndef OVCOREDB_INDEX_ENTRY_BLOCKS_HPP_
#define OVCOREDB_INDEX_ENTRY_BLOCKS_HPP_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "ovcoredb/storage/raw_array.hpp"

namespace ovcoredb {

// Less: a strict order of entries. Entry: trivially copyable, comparable with ==, with a word() that never falls along
// the order. The word tells about where among others an entry lies: most searches look at one or two cache lines of the
// directory and of the block.
template <class Entry, class Less>
class entry_blocks {
 public:
  static constexpr std::uint32_t block_capacity = 255;
  static constexpr std::uint32_t no_block = ~std::uint32_t{0};

  struct block {
    std::uint32_t next;  // numbers of blocks
    std::uint32_t previous;
    std::uint32_t count;  // at least 1
    Entry entries[block_capacity];
  };

  // Before one of the entries, or behind the last: then `offset` is the last block's count. Null block: there are none.
  // Good until something is written.
  struct position {
    const block* in = nullptr;
    std::uint32_t offset = 0;
    bool operator==(const position&) const = default;
    bool at_end() const { return in == nullptr || offset == in->count; }
    const Entry& operator*() const { return in->entries[offset]; }
  };

  explicit entry_blocks(Less less) : less_(less) {}

  position begin() const { return {block_at(first_), 0}; }
  position end() const { return {block_at(last_), last_ == no_block ? 0 : block_at(last_)->count}; }
  const block* next(const block& of) const { return block_at(of.next); }          // null behind the last
  const block* previous(const block& of) const { return block_at(of.previous); }  // null before the first

  // The first entry for which `before` is false. It is true of a beginning of the entries, up to about this word.
  template <class Before>
  position find(std::uint64_t word, const Before& before) const {
    if (directory_.empty()) return {};
    const place found = locate(word, before);
    const block& in = blocks_[found.number];
    if (found.offset < directory_[found.fence].count || in.next == no_block) return {&in, found.offset};
    return {&blocks_[in.next], 0};
  }

  // The entry is not there.
  void insert(const Entry& entry) {
    if (directory_.empty()) {
      first_ = last_ = add_block(0, entry);
      return;
    }
    place at = locate(entry);
    if (blocks_[at.number].count == block_capacity) {
      if (at.number == last_ && at.offset == block_capacity) {
        last_ = add_block(directory_.size(), entry);  // an ascending load fills its blocks
        return;
      }
      split(at);
      at = locate(entry);
    }
    insert_at(blocks_[at.number], at.offset, entry);
    ++directory_[at.fence].count;
  }

  // The entry is there.
  void erase(const Entry& entry) {
    const place at = locate(entry);
    // Where it begins a block, it was sought up to the end of the block before.
    const bool is_first_of_next = at.offset == blocks_[at.number].count;
    const std::size_t found = at.fence + (is_first_of_next ? 1 : 0);
    const std::uint32_t offset = is_first_of_next ? 0 : at.offset;
    block& in = blocks_[directory_[found].number];
    if (in.count == 1) {
      remove_block(found);
      return;
    }
    std::copy(in.entries + offset + 1, in.entries + in.count, in.entries + offset);
    directory_[found].count = --in.count;
    directory_[found].first = in.entries[0];
  }

 private:
  struct fence {
    Entry first;
    std::uint32_t number;  // of its block
    std::uint32_t count;   // the block's, so that a search need not wait for another line of it
  };

  // Where an entry belongs; the offset may be the block's count although other blocks follow.
  struct place {
    std::size_t fence;     // in the directory
    std::uint32_t number;  // of the block
    std::uint32_t offset;
  };

  const block* block_at(std::uint32_t number) const { return number == no_block ? nullptr : &blocks_[number]; }

  place locate(const Entry& entry) const {
    return locate(entry.word(), [&](const Entry& each) { return less_(each, entry); });
  }

  // There are blocks.
  template <class Before>
  place locate(std::uint64_t word, const Before& before) const {
    const std::size_t count = directory_.size();
    const word_range fences{directory_.front().first.word(), directory_.back().first.word()};
    std::size_t found = partition_point(count, 1 + guess(count - 1, fences, word),
                                        [&](std::size_t each) { return before(directory_[each].first); });
    if (found != 0) --found;
    const fence& at = directory_[found];
    const block& in = blocks_[at.number];
    const bool is_last = found + 1 == count;
    const word_range held{at.first.word(),
                          is_last ? in.entries[at.count - 1].word() + 1 : directory_[found + 1].first.word()};
    const std::size_t offset = partition_point(at.count, guess(at.count, held, word),
                                               [&](std::size_t each) { return before(in.entries[each]); });
    return {found, at.number, static_cast<std::uint32_t>(offset)};
  }

  struct word_range {
    std::uint64_t first;
    std::uint64_t end;
  };

  // How many of `count` words lie before a word if they stand at even distances in the range, the first at its start;
  // right for keys without gaps. Never more than the count.
  static std::size_t guess(std::size_t count, word_range range, std::uint64_t word) {
    if (word <= range.first) return 0;
    if (word >= range.end) return count;
    const auto density = static_cast<double>(count) / as_double(range.end - range.first);
    return std::min(count, static_cast<std::size_t>(as_double(word - range.first) * density));
  }
  // Good enough for guesses, and faster than the conversion of all 64 bits.
  static double as_double(std::uint64_t word) {
    constexpr std::uint64_t greatest = std::numeric_limits<std::int64_t>::max();
    return static_cast<double>(static_cast<std::int64_t>(std::min(word, greatest)));
  }

  // The number of positions for which `before` is true: those from 0 on. Looks ever further away from the guess, which
  // is at most the count, and then between the last two places.
  template <class Before>
  static std::size_t partition_point(std::size_t count, std::size_t guess, const Before& before) {
    std::size_t low = 0;
    std::size_t high = count;
    if (guess < high && before(guess)) {
      low = guess + 1;
      for (std::size_t step = 1; step <= high - low; step *= 2) {
        if (!before(low + step - 1)) {
          high = low + step - 1;
          break;
        }
        low += step;
      }
    } else {
      high = guess;
      for (std::size_t step = 1; step <= high; step *= 2) {
        if (before(high - step)) {
          low = high - step + 1;
          break;
        }
        high -= step;
      }
    }
    return partition_point_between(low, high, before);
  }

  // A binary search whose steps are selections, not jumps.
  template <class Before>
  static std::size_t partition_point_between(std::size_t low, std::size_t high, const Before& before) {
    for (std::size_t count = high - low; count != 0;) {
      const std::size_t half = count / 2;
      const bool behind = before(low + half);
      low = behind ? low + half + 1 : low;
      count = behind ? count - half - 1 : half;
    }
    return low;
  }

  static void insert_at(block& in, std::uint32_t offset, const Entry& entry) {
    std::copy_backward(in.entries + offset, in.entries + in.count, in.entries + in.count + 1);
    in.entries[offset] = entry;
    ++in.count;
  }

  // The number of a new block that holds the entry, which becomes the fence at that place in the directory. The entry
  // is copied: blocks move when one is added.
  std::uint32_t add_block(std::size_t at, Entry entry) {
    if (directory_.size() == directory_.capacity()) directory_.reserve(2 * directory_.size() + 1);
    const std::uint32_t number = unused_block();
    const std::uint32_t previous = at == 0 ? no_block : directory_[at - 1].number;
    const std::uint32_t next = at == directory_.size() ? no_block : directory_[at].number;
    block& added = blocks_[number];
    added.next = next;
    added.previous = previous;
    added.count = 1;
    added.entries[0] = entry;
    if (previous != no_block) blocks_[previous].next = number;
    if (next != no_block) blocks_[next].previous = number;
    directory_.insert(directory_.begin() + static_cast<std::ptrdiff_t>(at), {entry, number, 1});
    return number;
  }

  std::uint32_t unused_block() {
    if (removed_ == no_block) {
      blocks_.extend(1);
      return static_cast<std::uint32_t>(blocks_.size() - 1);
    }
    const std::uint32_t number = removed_;
    removed_ = blocks_[number].next;
    return number;
  }

  // Moves the upper half of a full block into a new one.
  void split(const place& full) {
    constexpr std::uint32_t kept = block_capacity / 2;
    const std::uint32_t number = add_block(full.fence + 1, blocks_[full.number].entries[kept]);
    block& in = blocks_[full.number];
    block& added = blocks_[number];
    std::copy(in.entries + kept, in.entries + in.count, added.entries);
    added.count = in.count - kept;
    in.count = kept;
    directory_[full.fence] = {in.entries[0], full.number, in.count};
    directory_[full.fence + 1].count = added.count;
    if (full.number == last_) last_ = number;
  }

  void remove_block(std::size_t at) {
    const std::uint32_t number = directory_[at].number;
    block& in = blocks_[number];
    (number == first_ ? first_ : blocks_[in.previous].next) = in.next;
    (number == last_ ? last_ : blocks_[in.next].previous) = in.previous;
    in.next = std::exchange(removed_, number);
    directory_.erase(directory_.begin() + static_cast<std::ptrdiff_t>(at));
  }

  Less less_;
  raw_array<block> blocks_;
  std::vector<fence> directory_;
  std::uint32_t first_ = no_block;
  std::uint32_t last_ = no_block;
  std::uint32_t removed_ = no_block;  // the first of the blocks that can be used again
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_ENTRY_BLOCKS_HPP_
