// Finds the column that a getter names, and says why it cannot be read.
#ifndef OVCOREDB_INTERFACE_COLUMN_LOOKUP_HPP_
#define OVCOREDB_INTERFACE_COLUMN_LOOKUP_HPP_

#include <cstdint>

#include "ovcoredb/interface/context_state.hpp"
#include "ovcoredb/ovcoredb.h"

namespace ovcoredb {

// The object and the column as the getters name them. Passed by value, which compilers keep in registers.
struct column_address {
  std::uint64_t object_number;
  std::uint64_t second_word;
  std::uint32_t column;

  std::uint16_t tag() const { return static_cast<std::uint16_t>(second_word); }
};

// Null: the context does not exist, or has not cached this column, of this type, for this object.
inline const cached_column* find_cached(const context_state* context, column_address address, column_type type) {
  if (context == nullptr) return nullptr;
  const cached_column& cached = context->columns.slot_of(address.column, address.tag());
  if (cached.name != cached_column::name_of(type, address.column, address.tag())) return nullptr;
  return address.object_number - cached.first < cached.count ? &cached : nullptr;
}

struct found_column {
  std::uint32_t status = ORV_OK;   // of the C interface
  const column* values = nullptr;  // null with ORV_OK: a column that every table has
  std::uint64_t row = 0;
};

// Finds a column that is not cached, and caches it. Out of line, which keeps the common read short.
[[gnu::noinline]] found_column find_uncached(context_state& context, std::uint64_t number, std::uint16_t tag,
                                             std::uint32_t column);

// `type` is only a guess, to look into the cache with.
inline found_column find_column(context_state* context, column_address address, column_type type) {
  const cached_column* const cached = find_cached(context, address, type);
  if (cached != nullptr) return {ORV_OK, cached->values, cached->row_of(address.object_number)};
  if (context == nullptr) return {ORV_BAD_CONTEXT};
  return find_uncached(*context, address.object_number, address.tag(), address.column);
}

// The status of a getter of this type.
inline std::uint32_t type_status(const found_column& found, column_type type) {
  if (found.status != ORV_OK) return found.status;
  if (found.values == nullptr) return ORV_TYPE_MISMATCH;
  if (found.values->type() == type) return found.values->has_value(found.row) ? ORV_OK : ORV_NO_VALUE;
  return found.values->type() == column_type::none ? ORV_BAD_COLUMN : ORV_TYPE_MISMATCH;
}

}  // namespace ovcoredb

#endif  // OVCOREDB_INTERFACE_COLUMN_LOOKUP_HPP_
