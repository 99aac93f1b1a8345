// One table: its columns and what is known about them.
#ifndef OVCOREDB_STORAGE_TABLE_HPP_
#define OVCOREDB_STORAGE_TABLE_HPP_

#include <cstdint>
#include <string>
#include <vector>

#include "ovcoredb/storage/column.hpp"

namespace ovcoredb {

class ordered_index;

// Column numbers that every table has; the declared ones follow.
inline constexpr std::uint32_t number_column = 0;
inline constexpr std::uint32_t set_specifier_column = 1;
inline constexpr std::uint32_t first_declared_column = 2;

// The columns that one table of a derivation chain declares, as positions in table::columns.
struct column_segment {
  std::uint16_t tag;
  std::uint32_t first;
  std::uint32_t count;
};

// A row holds the columns of the table's bases too, the outermost base's first. So a column has the same position in
// every table that derives from the one declaring it.
//
//    columns     [ outermost base's | ... | base's | own ]
//    segments    own, base's, ..., outermost base's
struct table {
  std::uint16_t tag = 0;
  std::uint64_t rows = 0;
  std::vector<column_segment> segments;
  std::vector<column> columns;
  std::u16string set_specifier;
  std::vector<std::uint8_t> encoded_set_specifier;
  std::vector<ordered_index*> indexes;  // its own and those of its bases

  // Null when `segment_tag` is neither this table nor one that it derives from.
  const column_segment* find_segment(std::uint16_t segment_tag) const {
    if (segments.front().tag == segment_tag) return &segments.front();
    return find_base_segment(segment_tag);
  }

  // Back to the first `count` rows, also after an append to only some of the columns.
  void truncate(std::uint64_t count);

 private:
  const column_segment* find_base_segment(std::uint16_t segment_tag) const;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_TABLE_HPP_
