// Finds the column that a getter names, and says why it cannot be read.
#ifndef OVCOREDB_INTERFACE_COLUMN_LOOKUP_HPP_
#define OVCOREDB_INTERFACE_COLUMN_LOOKUP_HPP_

#include <cstdint>

#include "ovcoredb/interface/context_state.hpp"
#include "ovcoredb/ovcoredb.h"

namespace ovcoredb {

// The object and the column as the getters name them.
struct column_address {
  std::uint64_t object_number;
  std::uint64_t second_word;
  std::uint32_t column;

  std::uint16_t tag() const { return static_cast<std::uint16_t>(second_word); }
};

// Null: the context does not exist, or has not cached this column, of this type, for this object.
inline const cached_column* find_cached(const context_state* context, const column_address& address, column_type type) {
  if (context == nullptr) return nullptr;
  return context->columns.find(type, address.column, address.tag(), address.object_number);
}

struct found_column {
  std::uint32_t status = ORV_OK;   // of the C interface
  const column* values = nullptr;  // null with ORV_OK: a column that every table has
  std::uint64_t row = 0;
};

// Finds a column, cached or not, and caches it. `type` is only a guess where to look first.
found_column find_column(context_state* context, const column_address& address, column_type type);

// What a getter of this type answers.
std::uint32_t type_status(const found_column& found, column_type type);

}  // namespace ovcoredb

#endif  // OVCOREDB_INTERFACE_COLUMN_LOOKUP_HPP_
