// The values of one column of one table, row by row, in one block of memory.
#ifndef OVCOREDB_COLUMN_HPP_
#define OVCOREDB_COLUMN_HPP_

#include <cstdint>
#include <cstring>
#include <span>

#include "ovcoredb/database.hpp"
#include "ovcoredb/raw_array.hpp"

namespace ovcoredb {

class column {
 public:
  explicit column(column_type type);

  column_type type() const { return type_; }

  // The cell holds the column's type, or nothing.
  void append(const cell& value);

  // Back to the first `rows` rows, also after an append that threw.
  void truncate(std::uint64_t rows);

  bool has_value(std::uint64_t row) const { return absent_.empty() || (absent_[row >> 6] >> (row & 63) & 1) == 0; }

  // T: std::uint64_t, std::int64_t (decimals in millionths), float, double, OV_OBJ_REF, or std::uint8_t for bool.
  template <class T>
  T fixed(std::uint64_t row) const {
    T value;
    std::memcpy(&value, values_.data() + row * sizeof(T), sizeof(T));
    return value;
  }

  // Of a text (encoded) or binary column.
  std::span<const std::uint8_t> bytes(std::uint64_t row) const {
    const auto first = row == 0 ? 0 : fixed<std::uint64_t>(row - 1);
    return {bytes_.data() + first, fixed<std::uint64_t>(row) - first};
  }

 private:
  struct appender;

  std::uint64_t rows() const { return width_ == 0 ? 0 : values_.size() / width_; }
  void mark_absent(std::uint64_t row);

  column_type type_;
  std::uint8_t width_;               // bytes per row in values_
  raw_array<std::uint8_t> values_;   // text and binary: where each row's bytes end in bytes_
  raw_array<std::uint64_t> absent_;  // one bit per row without a value; empty while there is none
  raw_array<std::uint8_t> bytes_;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_COLUMN_HPP_
