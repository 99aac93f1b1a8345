// An ordered index: small entries in order. An entry holds the beginning of its object's key, which decides most
// comparisons; the rest of the key is read from the object's columns when two beginnings are equal.
#ifndef OVCOREDB_INDEX_ORDERED_INDEX_HPP_
#define OVCOREDB_INDEX_ORDERED_INDEX_HPP_

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "ovcoredb/index/entry_blocks.hpp"
#include "ovcoredb/index/index_key.hpp"
#include "ovcoredb/storage/object_store.hpp"

namespace ovcoredb {

//    word     8 bytes   see leading_order
//    tagged   4 bytes   31 leading_order::high | 30 ... 0 object number
//
// For a single number column the two in this order are the index order, duplicates in object order included.
class index_entry {
 public:
  index_entry() = default;
  index_entry(leading_order leading, std::uint64_t number)
      : tagged_(std::uint32_t{leading.high} << 31 | static_cast<std::uint32_t>(number)) {
    std::memcpy(word_, &leading.word, sizeof word_);
  }

  std::uint64_t word() const {
    std::uint64_t word;
    std::memcpy(&word, word_, sizeof word);
    return word;
  }
  std::uint32_t tagged() const { return tagged_; }
  bool high() const { return (tagged_ >> 31) != 0; }
  std::uint64_t number() const { return tagged_ & index_number_mask; }
  bool operator==(const index_entry&) const = default;

 private:
  std::uint32_t word_[2];  // in two halves, so that entries need no padding
  std::uint32_t tagged_;
};

class ordered_index {
 public:
  ordered_index(const object_store& objects, std::uint64_t handle, std::vector<key_part> parts, bool unique);
  ordered_index(const ordered_index&) = delete;
  ordered_index& operator=(const ordered_index&) = delete;

  std::uint64_t handle() const { return handle_; }
  const std::vector<key_part>& parts() const { return parts_; }

  void insert(std::uint64_t number);  // throws unique_violation
  void erase(std::uint64_t number);   // while the object's columns can still be read

  // Replaces an end by that of a key. False when the key is not well formed or does not fit the index.
  bool read_end(const std::uint8_t* key, bool behind_equal, range_end& end) const {
    if (is_number_ && read_number_key(key, parts_.front().ascending, behind_equal, end)) return true;
    return read_key(key, parts_, behind_equal, end);
  }

  // Whether the entry lies before the end.
  bool before(const index_entry& entry, const range_end& end) const {
    if (leading_is_key_) return whole_before(entry, end);
    return entry.word() == end.word ? rest_before(entry, end) : entry.word() < end.word;
  }

 private:
  struct entry_order {
    const ordered_index* index;
    bool operator()(const index_entry& a, const index_entry& b) const { return index->less(a, b); }
  };

 public:
  using entries = entry_blocks<index_entry, entry_order>;
  entries::position begin() const { return entries_.begin(); }
  entries::position end() const { return entries_.end(); }
  const entries::block* next(const entries::block& of) const { return entries_.next(of); }
  const entries::block* previous(const entries::block& of) const { return entries_.previous(of); }

  // The first entry that is not before the end.
  entries::position find(const range_end& end) const {
    if (leading_is_key_) {
      return entries_.find(end.word, [&](const index_entry& each) { return whole_before(each, end); });
    }
    return entries_.find(end.word, [&](const index_entry& each) { return before(each, end); });
  }

 private:
  // The same where the beginning is the key. Without a jump, which searches would take either way.
  static bool whole_before(const index_entry& entry, const range_end& end) {
    const bool below = entry.word() < end.word;
    const bool equal = entry.word() == end.word;
    const bool tagged_below = entry.tagged() < end.tagged;
    return below | (equal & tagged_below);
  }

  static int compare_leading(const index_entry& a, std::uint64_t word, bool high) {
    if (a.word() != word) return a.word() < word ? -1 : 1;
    return static_cast<int>(a.high()) - static_cast<int>(high);
  }

  bool less(const index_entry& a, const index_entry& b) const {
    if (a.word() != b.word()) return a.word() < b.word();
    if (leading_is_key_) return a.tagged() < b.tagged();
    const int order = compare_keys(a, b);
    return order != 0 ? order < 0 : a.tagged() < b.tagged();
  }

  int compare_keys(const index_entry& a, const index_entry& b) const {
    const int order = compare_leading(a, b.word(), b.high());
    return order != 0 || leading_is_key_ ? order : compare_rest(a.number(), b.number());
  }

  index_entry entry_of(std::uint64_t number) const;
  bool holds_null(std::uint64_t number) const;
  int compare_rest(std::uint64_t a, std::uint64_t b) const;
  // Out of line, which keeps the search for numbers short.
  [[gnu::noinline]] bool rest_before(const index_entry& entry, const range_end& end) const;

  const object_store& objects_;
  std::uint64_t handle_;
  std::vector<key_part> parts_;
  bool unique_;
  std::size_t first_rest_;  // the first part that equal beginnings leave open
  bool leading_is_key_;     // none is left open
  bool is_number_;          // any number is a key, which excludes those of bool
  entries entries_;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_ORDERED_INDEX_HPP_
