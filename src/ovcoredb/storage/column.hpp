// The values of one column of one table, row by row.
#ifndef OVCOREDB_STORAGE_COLUMN_HPP_
#define OVCOREDB_STORAGE_COLUMN_HPP_

#include <bit>
#include <cassert>
#include <cstdint>
#include <span>

#include "ovcoredb/database.hpp"
#include "ovcoredb/storage/narrow_array.hpp"
#include "ovcoredb/storage/raw_array.hpp"

namespace ovcoredb {

// Numbers lie in an array. Texts and binaries lie back to back in another array, divided into groups of 64
// rows; the numbers then tell where each ends, counted from the start of its group:
//
//    values_    3 7 9 ...                 2 8 ...
//    groups_    start 0                   start 900
//    bytes_     abc defg hi ...           jk lmnopq ...
class column {
 public:
  explicit column(column_type type) : type_(type) {}

  column_type type() const { return type_; }

  // Requires: the cell holds the column's type, or nothing. When it throws, truncate removes what it left.
  void append(const cell& value);

  // Back to the first `rows` rows.
  void truncate(std::uint64_t rows);

  bool has_value(std::uint64_t row) const { return absent_.empty() || (absent_[row >> 6] >> (row & 63) & 1) == 0; }

  // Each requires: the column has one of the types in its comment, and a value in this row.
  std::uint64_t unsigned_value(std::uint64_t row) const { return values_[row]; }  // uint64, bool
  std::int64_t signed_value(std::uint64_t row) const {                            // int64; decimal, in millionths
    return static_cast<std::int64_t>(values_[row] >> 1 ^ (0 - (values_[row] & 1)));
  }
  float float32_value(std::uint64_t row) const {
    return std::bit_cast<float>(static_cast<std::uint32_t>(values_[row]));
  }
  double float64_value(std::uint64_t row) const { return std::bit_cast<double>(values_[row]); }
  OV_OBJ_REF reference(std::uint64_t row) const { return {values_[row], second_words_[row]}; }
  std::span<const std::uint8_t> bytes(std::uint64_t row) const {  // text (encoded), binary
    assert(holds_bytes());
    const group& in = groups_[row / rows_per_group];
    const std::uint64_t row_in_group = row % rows_per_group;
    // The exact address is not known before values_ comes from memory, but its neighbourhood is. Ask for both at once.
    __builtin_prefetch(bytes_.data() + in.start + in.usual_size * row_in_group / rows_per_group);
    const std::uint64_t first = row_in_group == 0 ? 0 : values_[row - 1];
    return {bytes_.data() + in.start + first, values_[row] - first};
  }

 private:
  struct appender;

  struct group {
    std::uint64_t start;       // in bytes_
    std::uint64_t usual_size;  // the size of the group before, to guess with
  };
  static constexpr std::uint64_t rows_per_group = 64;

  bool holds_bytes() const { return type_ == column_type::text || type_ == column_type::binary; }

  void begin_group();
  void push_end_of_bytes();
  void mark_absent(std::uint64_t row);

  column_type type_;
  narrow_array values_;  // numbers, signed ones with the sign in the lowest bit; of texts and binaries, where they end
  raw_array<std::uint64_t> absent_;  // one bit per row, set where there is no value; empty while all rows have one
  narrow_array second_words_;        // of references
  raw_array<std::uint8_t> bytes_;    // of texts and binaries
  raw_array<group> groups_;          // of bytes_; few enough to stay in the cache
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_COLUMN_HPP_
