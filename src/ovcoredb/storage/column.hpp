// The values of one column of one table, row by row.
#ifndef OVCOREDB_STORAGE_COLUMN_HPP_
#define OVCOREDB_STORAGE_COLUMN_HPP_

#include <bit>
#include <cstdint>
#include <span>

#include "ovcoredb/database.hpp"
#include "ovcoredb/storage/narrow_array.hpp"
#include "ovcoredb/storage/raw_array.hpp"

namespace ovcoredb {

class column {
 public:
  explicit column(column_type type) : type_(type) {}

  column_type type() const { return type_; }

  // The cell holds the column's type, or nothing.
  void append(const cell& value);

  // Back to the first `rows` rows, also after an append that threw.
  void truncate(std::uint64_t rows);

  bool has_value(std::uint64_t row) const { return absent_.empty() || (absent_[row >> 6] >> (row & 63) & 1) == 0; }

  // Of a column of the type in question; a decimal's in millionths.
  std::uint64_t unsigned_value(std::uint64_t row) const { return values_[row]; }  // uint64, bool
  std::int64_t signed_value(std::uint64_t row) const {                            // int64, decimal
    return static_cast<std::int64_t>(values_[row] >> 1 ^ (0 - (values_[row] & 1)));
  }
  float float32_value(std::uint64_t row) const {
    return std::bit_cast<float>(static_cast<std::uint32_t>(values_[row]));
  }
  double float64_value(std::uint64_t row) const { return std::bit_cast<double>(values_[row]); }
  OV_OBJ_REF reference(std::uint64_t row) const { return {values_[row], second_words_[row]}; }
  std::span<const std::uint8_t> bytes(std::uint64_t row) const {  // text (encoded), binary
    const group& in = groups_[row / rows_per_group];
    const std::uint64_t place = row % rows_per_group;
    // Where the bytes lie is not known before values_ comes from memory, but about where: both are asked for at once.
    __builtin_prefetch(bytes_.data() + in.start + in.usual_size * place / rows_per_group);
    const std::uint64_t first = place == 0 ? 0 : values_[row - 1];
    return {bytes_.data() + in.start + first, values_[row] - first};
  }

 private:
  struct appender;

  // Some rows' bytes.
  struct group {
    std::uint64_t start;       // in bytes_
    std::uint64_t usual_size;  // that of the group before
  };
  static constexpr std::uint64_t rows_per_group = 64;

  bool holds_bytes() const { return type_ == column_type::text || type_ == column_type::binary; }

  void begin_group();
  void push_end_of_bytes();
  void mark_absent(std::uint64_t row);

  column_type type_;
  narrow_array values_;  // signed numbers with the sign in the lowest bit; of bytes, where they end in their group's
  raw_array<std::uint64_t> absent_;  // one bit per row without a value; empty while there is none
  narrow_array second_words_;        // of references
  raw_array<std::uint8_t> bytes_;    // of texts and binaries, in groups of rows
  raw_array<group> groups_;          // of bytes_; few enough to stay near the processor
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_COLUMN_HPP_
