// The order of an index's entries among each other and against the ends of ranges.
#ifndef OVCOREDB_INDEX_ENTRY_ORDER_HPP_
#define OVCOREDB_INDEX_ENTRY_ORDER_HPP_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ovcoredb/index/index_entry.hpp"
#include "ovcoredb/index/key_part.hpp"
#include "ovcoredb/index/range_end.hpp"
#include "ovcoredb/storage/object_store.hpp"

namespace ovcoredb {

// Compares entries first. Where they leave the order open, reads the rest of the keys from the objects' columns.
class entry_order {
 public:
  // Requires: there is a part.
  entry_order(const object_store& objects, std::vector<key_part> parts);
  entry_order(const entry_order&) = delete;
  entry_order& operator=(const entry_order&) = delete;

  const std::vector<key_part>& parts() const { return parts_; }

  // Whether entries hold whole keys, so that no column is ever read.
  bool entry_is_key() const { return entry_is_key_; }

  // Requires: the object exists.
  index_entry entry_of(std::uint64_t number) const;
  bool holds_null(std::uint64_t number) const;

  bool less(const index_entry& a, const index_entry& b) const {
    if (a.word() != b.word()) return a.word() < b.word();
    if (entry_is_key_) return a.tail() < b.tail();
    const int order = compare_keys(a, b);
    return order != 0 ? order < 0 : a.tail() < b.tail();
  }

  // Negative, 0 or positive. Looks at keys only, not at the objects' numbers.
  int compare_keys(const index_entry& a, const index_entry& b) const {
    if (a.word() != b.word()) return a.word() < b.word() ? -1 : 1;
    const int order = static_cast<int>(a.high()) - static_cast<int>(b.high());
    return order != 0 || entry_is_key_ ? order : compare_rest(a.number(), b.number());
  }

  // Whether the entry lies before the end.
  bool before(const index_entry& entry, const range_end& end) const {
    if (entry_is_key_) return whole_key_before(entry, end);
    return entry.word() == end.word ? rest_before(entry, end) : entry.word() < end.word;
  }

  // Requires: entry_is_key(). Without a jump, since searches would take it either way equally often.
  static bool whole_key_before(const index_entry& entry, const range_end& end) {
    const bool below = entry.word() < end.word;
    const bool equal = entry.word() == end.word;
    const bool tail_below = entry.tail() < end.tail;
    return below | (equal & tail_below);
  }

 private:
  int compare_rest(std::uint64_t a, std::uint64_t b) const;
  // Out of line, which keeps searches for numbers short.
  [[gnu::noinline]] bool rest_before(const index_entry& entry, const range_end& end) const;

  const object_store& objects_;
  std::vector<key_part> parts_;
  std::size_t first_rest_;  // the first part that equal words leave open
  bool entry_is_key_;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_ENTRY_ORDER_HPP_
