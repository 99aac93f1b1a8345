// The columns of an index's key, and how their values are read from objects.
#ifndef OVCOREDB_INDEX_KEY_PART_HPP_
#define OVCOREDB_INDEX_KEY_PART_HPP_

#include <cstdint>

#include "ovcoredb/database.hpp"
#include "ovcoredb/index/key_component.hpp"
#include "ovcoredb/storage/object_store.hpp"

namespace ovcoredb {

enum class part_source : std::uint8_t { number, set_specifier, column };

// One column of a key.
struct key_part {
  part_source source = part_source::number;
  column_type type = column_type::uint64;  // a set specifier counts as text
  bool ascending = true;
  std::uint32_t position = 0;  // in table::columns, if the source is a column

  bool holds_bytes() const { return type == column_type::text || type == column_type::binary; }
};

// The value of a key part in the object with this number, which lies at this place.
key_component read_component(const key_part& part, std::uint64_t number, const object_place& place);

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_KEY_PART_HPP_
