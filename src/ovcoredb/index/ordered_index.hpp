// An ordered index over the objects of a table.
#ifndef OVCOREDB_INDEX_ORDERED_INDEX_HPP_
#define OVCOREDB_INDEX_ORDERED_INDEX_HPP_

#include <cstdint>
#include <vector>

#include "ovcoredb/index/entry_blocks.hpp"
#include "ovcoredb/index/entry_order.hpp"
#include "ovcoredb/index/index_key.hpp"
#include "ovcoredb/index/range_end.hpp"
#include "ovcoredb/storage/object_store.hpp"

namespace ovcoredb {

class ordered_index {
 public:
  // The objects are lent. Requires: there is a part.
  ordered_index(const object_store& objects, std::uint64_t handle, std::vector<key_part> parts, bool unique);
  ordered_index(const ordered_index&) = delete;
  ordered_index& operator=(const ordered_index&) = delete;

  std::uint64_t handle() const { return handle_; }
  const std::vector<key_part>& parts() const { return order_.parts(); }

  // Requires: the object exists and is not entered. Throws: unique_violation, std::bad_alloc; then has not changed.
  void insert(std::uint64_t number);

  // Requires: the object is entered and still exists.
  void erase(std::uint64_t number);

  // Replaces an end by that of a key. False when the key is not well formed or does not fit the index.
  bool read_end(const std::uint8_t* key, bool after_equal, range_end& end) const {
    if (is_number_ && read_number_key(key, parts().front().ascending, after_equal, end)) return true;
    return read_key(key, parts(), after_equal, end);
  }

  // Whether the entry lies before the end.
  bool before(const index_entry& entry, const range_end& end) const { return order_.before(entry, end); }

  // The first entry that is not before the end.
  entry_position find(const range_end& end) const {
    if (order_.entry_is_key()) {
      return entries_.find(end.word, [&](const index_entry& each) { return entry_order::whole_key_before(each, end); });
    }
    return entries_.find(end.word, [&](const index_entry& each) { return order_.before(each, end); });
  }

  const entry_blocks& entries() const { return entries_; }

 private:
  void check_unique(const index_entry& entry) const;

  std::uint64_t handle_;
  bool unique_;
  entry_order order_;
  bool is_number_;  // every number is a key of it; not so for bool, which takes 0 and 1 only
  entry_blocks entries_;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_ORDERED_INDEX_HPP_
