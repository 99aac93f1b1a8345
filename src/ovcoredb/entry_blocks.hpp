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

// Less: a strict order of entries. Entry: trivially copyable and comparable with ==.
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

  // The first entry for which `before` is false. It is true of a beginning of the entries.
  template <class Before>
  position find(const Before& before) const {
    const place found = locate(before);
    if (found.in == nullptr) return {};
    if (found.offset < found.in->count || found.in->next == nullptr) return {found.in, found.offset};
    return {found.in->next, 0};
  }

  // The entry is not there.
  void insert(const Entry& entry) {
    place at = locate([&](const Entry& each) { return less_(each, entry); });
    if (at.in == nullptr) {
      first_ = last_ = add_block(nullptr, entry);
    } else if (at.in->count < block_capacity) {
      insert_at(*at.in, at.offset, entry);
    } else if (at.in == last_ && at.offset == block_capacity) {
      last_ = add_block(last_, entry);  // an ascending load fills its blocks
    } else {
      split(at);
      at = locate([&](const Entry& each) { return less_(each, entry); });
      insert_at(*at.in, at.offset, entry);
    }
  }

  // The entry is there.
  void erase(const Entry& entry) {
    const position at = find([&](const Entry& each) { return less_(each, entry); });
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

  template <class Before>
  place locate(const Before& before) const {
    auto found = directory_.lower_bound(boundary<Before>{before});
    if (first_ == nullptr) return {};
    if (found != directory_.begin()) --found;
    return {found->in.get(), locate_in(*found->in, before)};
  }

  // A binary search whose steps are selections, not jumps.
  template <class Before>
  static std::uint32_t locate_in(const block& in, const Before& before) {
    std::uint32_t offset = 0;
    for (std::uint32_t count = in.count; count != 0;) {
      const std::uint32_t half = count / 2;
      const bool behind = before(in.entries[offset + half]);
      offset = behind ? offset + half + 1 : offset;
      count = behind ? count - half - 1 : half;
    }
    return offset;
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
