// Where an object lies: the tag of its table and its row there, in one word.
#ifndef OVCOREDB_STORAGE_PACKED_PLACE_HPP_
#define OVCOREDB_STORAGE_PACKED_PLACE_HPP_

#include <cassert>
#include <cstdint>

namespace ovcoredb {

//    63 ... 16 row | 15 ... 0 tag
class packed_place {
 public:
  packed_place() = default;
  packed_place(std::uint64_t row, std::uint16_t tag) : word_(row << 16 | tag) { assert(row >> 48 == 0); }

  std::uint64_t row() const { return word_ >> 16; }
  std::uint16_t tag() const { return static_cast<std::uint16_t>(word_); }

  // So many rows further, in the same table.
  packed_place plus(std::uint64_t rows) const { return {row() + rows, tag()}; }

  bool operator==(const packed_place&) const = default;

 private:
  std::uint64_t word_ = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_PACKED_PLACE_HPP_
