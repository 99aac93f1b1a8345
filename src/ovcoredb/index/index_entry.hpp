// The entries of an index. An entry holds the object's number and the beginning of its key: the first eight bytes of
// the first component, which decide most comparisons.
#ifndef OVCOREDB_INDEX_INDEX_ENTRY_HPP_
#define OVCOREDB_INDEX_INDEX_ENTRY_HPP_

#include <cassert>
#include <cstdint>
#include <cstring>

#include "ovcoredb/index/key_component.hpp"

namespace ovcoredb {

// The order of a key's beginning: by word, then by high. A descending column turns both round.
struct leading_order {
  std::uint64_t word = 0;
  bool high = false;  // ascending: not NULL, which lies below a value of the same word
};

inline leading_order leading_order_of(const key_component& first, bool ascending) {
  const bool present = first.kind != component_kind::null;
  return ascending ? leading_order{first.word, present} : leading_order{~first.word, !present};
}

// The bits of an object number. No object has the highest number, so that ends of ranges can lie above all objects.
inline constexpr std::uint32_t index_number_mask = 0x7FFFFFFF;

constexpr std::uint32_t entry_tail(bool high, std::uint32_t number) { return std::uint32_t{high} << 31 | number; }

//    word   8 bytes   leading_order::word
//    tail   4 bytes   31 leading_order::high | 30 ... 0 object number
//
// Where the key is one number, the order by word and tail is the index order, with equal keys in the order of objects.
class index_entry {
 public:
  index_entry() = default;
  index_entry(leading_order leading, std::uint64_t number)
      : tail_(entry_tail(leading.high, static_cast<std::uint32_t>(number))) {
    assert(number < index_number_mask);
    std::memcpy(word_, &leading.word, sizeof word_);
  }

  std::uint64_t word() const {
    std::uint64_t word;
    std::memcpy(&word, word_, sizeof word);
    return word;
  }
  std::uint32_t tail() const { return tail_; }
  bool high() const { return (tail_ >> 31) != 0; }
  std::uint64_t number() const { return tail_ & index_number_mask; }
  bool operator==(const index_entry&) const = default;

 private:
  std::uint32_t word_[2];  // in halves, so that entries need no padding
  std::uint32_t tail_;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_INDEX_ENTRY_HPP_
