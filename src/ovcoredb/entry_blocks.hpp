// The entries of an index in order, in blocks of a few hundred that lie side by side: a step is a step in an array. A
// B-tree over the blocks' first entries finds the block of an entry; it is small enough to stay in the cache.
//
//    directory    fence 1 ------> fence 2 ------> fence 3
//                    |               |               |
//                 [a b c . .] <-> [d e f g .] <-> [h i . . .]
//
// A fence is an entry of its block and not above any other of it, except in the first block, whose fence nobody needs.
#ifndef OVCOREDB_ENTRY_BLOCKS_HPP_
#define OVCOREDB_ENTRY_BLOCKS_HPP_

#include <absl/container/btree_set.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>

namespace ovcoredb {

// Less: a strict order of entries. Entry: trivially copyable, comparable with ==, with a word() that never falls along
// the order. The word tells about where in its block an entry lies: most searches look at one or two cache lines of it.
template <class Entry, class Less>
class entry_blocks {
 public:
  static constexpr std::uint32_t block_capacity = 252;

  struct block {
    block* next = nullptr;
    block* previous = nullptr;
    std::uint32_t count = 0;  // at least 1
    Entry entries[block_capacity];
  };

  // Before one of the entries, or behind the last: then `offset` is the last block's count. Null block: there are none.
  struct position {
    const block* in = nullptr;
    std::uint32_t offset = 0;
    bool operator==(const position&) const = default;
    bool at_end() const { return in == nullptr || offset == in->count; }
    const Entry& operator*() const { return in->entries[offset]; }
  };

  explicit entry_blocks(Less less) : less_(less), directory_(fence_order{less}) {}

  position begin() const { return {first_, 0}; }
  position end() const { return {last_, last_ == nullptr ? 0 : last_->count}; }

  // The first entry for which `before` is false. It is true of a beginning of the entries, up to about this word.
  template <class Before>
  position find(std::uint64_t word, const Before& before) const {
    const place found = locate(word, before);
    if (found.in == nullptr) return {};
    if (found.offset < found.in->count || found.in->next == nullptr) return {found.in, found.offset};
    return {found.in->next, 0};
  }

  // The entry is not there.
  void insert(const Entry& entry) {
    place at = locate(entry);
    if (at.in == nullptr) {
      first_ = last_ = add_block(nullptr, entry);
    } else if (at.in->count < block_capacity) {
      insert_at(*at.in, at.offset, entry);
    } else if (at.in == last_ && at.offset == block_capacity) {
      last_ = add_block(last_, entry);  // an ascending load fills its blocks
    } else {
      split(at);
      at = locate(entry);
      insert_at(*at.in, at.offset, entry);
    }
  }

  // The entry is there.
  void erase(const Entry& entry) {
    const position at = find(entry.word(), [&](const Entry& each) { return less_(each, entry); });
    const auto found = fence_of(entry);
    block& in = *found->in;
    if (in.count == 1) {
      remove_block(found);
      return;
    }
    std::copy(in.entries + at.offset + 1, in.entries + in.count, in.entries + at.offset);
    --in.count;
    if (found->first == entry) found->first = in.entries[0];
  }

 private:
  template <class Before>
  struct boundary {
    const Before& before;
  };
  struct fence {
    mutable Entry first;  // another entry of the block takes its place without disturbing the order
    std::unique_ptr<block> in;
  };
  struct fence_order {
    using is_transparent = void;
    using absl_btree_prefer_linear_node_search = std::true_type;  // a mispredicted branch costs more than its fences
    Less less;
    bool operator()(const fence& a, const fence& b) const { return less(a.first, b.first); }
    bool operator()(const fence& a, const Entry& b) const { return less(a.first, b); }
    bool operator()(const Entry& a, const fence& b) const { return less(a, b.first); }
    template <class Before>
    bool operator()(const fence& a, const boundary<Before>& b) const {
      return b.before(a.first);
    }
    template <class Before>
    bool operator()(const boundary<Before>& a, const fence& b) const {
      return !a.before(b.first);
    }
  };
  using fences = absl::btree_set<fence, fence_order>;

  // Where an entry at the boundary belongs; the offset may be the block's count although other blocks follow.
  struct place {
    block* in = nullptr;
    std::uint32_t offset = 0;
  };

  place locate(const Entry& entry) const {
    return locate(entry.word(), [&](const Entry& each) { return less_(each, entry); });
  }

  template <class Before>
  place locate(std::uint64_t word, const Before& before) const {
    auto found = directory_.lower_bound(boundary<Before>{before});
    if (first_ == nullptr) return {};
    const auto behind = found;
    if (found != directory_.begin()) --found;
    block& in = *found->in;
    const Entry& highest = behind != found && behind != directory_.end() ? behind->first : in.entries[in.count - 1];
    return {&in, locate_in(in, guess(in.count, found->first.word(), highest.word(), word), before)};
  }

  // Where a word lies if words grow evenly from the lowest to the highest.
  static std::uint32_t guess(std::uint32_t count, std::uint64_t lowest, std::uint64_t highest, std::uint64_t word) {
    if (word <= lowest) return 0;
    if (word >= highest) return count;
    const auto part = static_cast<double>(static_cast<std::int64_t>((word - lowest) / 2));
    const auto whole = static_cast<double>(static_cast<std::int64_t>((highest - lowest) / 2)) + 1;
    return static_cast<std::uint32_t>(part / whole * count);
  }

  // Looks ever further away from the guess, which is at most the block's count, and then between the last two places.
  template <class Before>
  static std::uint32_t locate_in(const block& in, std::uint32_t guess, const Before& before) {
    std::uint32_t low = 0;
    std::uint32_t high = in.count;
    if (guess < high && before(in.entries[guess])) {
      low = guess + 1;
      for (std::uint32_t step = 1; step <= high - low; step *= 2) {
        if (!before(in.entries[low + step - 1])) {
          high = low + step - 1;
          break;
        }
        low += step;
      }
    } else {
      high = guess;
      for (std::uint32_t step = 1; step <= high; step *= 2) {
        if (before(in.entries[high - step])) {
          low = high - step + 1;
          break;
        }
        high -= step;
      }
    }
    return locate_between(in, low, high, before);
  }

  // A binary search whose steps are selections, not jumps.
  template <class Before>
  static std::uint32_t locate_between(const block& in, std::uint32_t low, std::uint32_t high, const Before& before) {
    for (std::uint32_t count = high - low; count != 0;) {
      const std::uint32_t half = count / 2;
      const bool behind = before(in.entries[low + half]);
      low = behind ? low + half + 1 : low;
      count = behind ? count - half - 1 : half;
    }
    return low;
  }

  typename fences::iterator fence_of(const Entry& entry) {
    const auto behind = directory_.upper_bound(entry);
    return behind == directory_.begin() ? behind : std::prev(behind);
  }

  static void insert_at(block& in, std::uint32_t offset, const Entry& entry) {
    std::copy_backward(in.entries + offset, in.entries + in.count, in.entries + in.count + 1);
    in.entries[offset] = entry;
    ++in.count;
  }

  // A new block that holds the entry, behind `previous`.
  block* add_block(block* previous, const Entry& entry) {
    auto added = std::make_unique_for_overwrite<block>();
    block* const in = added.get();
    in->entries[0] = entry;
    in->count = 1;
    directory_.insert(fence{entry, std::move(added)});
    link(previous, in, previous == nullptr ? nullptr : previous->next);
    return in;
  }

  static void link(block* previous, block* in, block* next) {
    in->previous = previous;
    in->next = next;
    if (previous != nullptr) previous->next = in;
    if (next != nullptr) next->previous = in;
  }

  // Moves the upper half of a full block into a new one.
  void split(const place& full) {
    block& in = *full.in;
    if (&in == first_) directory_.begin()->first = in.entries[0];
    constexpr std::uint32_t kept = block_capacity / 2;
    block* const added = add_block(&in, in.entries[kept]);
    std::copy(in.entries + kept, in.entries + in.count, added->entries);
    added->count = in.count - kept;
    in.count = kept;
    if (&in == last_) last_ = added;
  }

  void remove_block(typename fences::iterator of) {
    block& in = *of->in;
    if (in.previous != nullptr) in.previous->next = in.next;
    if (in.next != nullptr) in.next->previous = in.previous;
    if (&in == first_) first_ = in.next;
    if (&in == last_) last_ = in.previous;
    directory_.erase(of);
  }

  Less less_;
  fences directory_;
  block* first_ = nullptr;
  block* last_ = nullptr;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_ENTRY_BLOCKS_HPP_
