#include "ovcoredb/interface/column_lookup.hpp"

namespace ovcoredb {
namespace {

found_column find_uncached(context_state& context, const column_address& address) {
  const object_store& objects = context.database->objects;
  const object_place place = objects.find_object(address.object_number);
  if (place.in == nullptr) return {ORV_BAD_OBJECT};
  const column_segment* const segment = place.in->find_segment(address.tag());
  if (segment == nullptr) return {ORV_BAD_COLUMN};
  if (address.column < first_declared_column) return {};
  const std::uint32_t declared = address.column - first_declared_column;
  if (declared >= segment->count) return {ORV_BAD_COLUMN};
  const column& values = place.in->columns[segment->first + declared];
  context.columns.put(address.column, address.tag(), objects.run_of(address.object_number), values);
  return {ORV_OK, &values, place.row};
}

}  // namespace

found_column find_column(context_state* context, const column_address& address, column_type type) {
  const cached_column* const cached = find_cached(context, address, type);
  if (cached != nullptr) return {ORV_OK, cached->values, cached->row_of(address.object_number)};
  if (context == nullptr) return {ORV_BAD_CONTEXT};
  return find_uncached(*context, address);
}

std::uint32_t type_status(const found_column& found, column_type type) {
  if (found.status != ORV_OK) return found.status;
  if (found.values == nullptr) return ORV_TYPE_MISMATCH;
  if (found.values->type() == type) return found.values->has_value(found.row) ? ORV_OK : ORV_NO_VALUE;
  return found.values->type() == column_type::none ? ORV_BAD_COLUMN : ORV_TYPE_MISMATCH;
}

}  // namespace ovcoredb
