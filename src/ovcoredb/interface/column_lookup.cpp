#include "ovcoredb/interface/column_lookup.hpp"

namespace ovcoredb {

found_column find_uncached(context_state& context, std::uint64_t number, std::uint16_t tag, std::uint32_t column) {
  const object_store& objects = context.database->objects;
  const object_place place = objects.find_object(number);
  if (place.in == nullptr) return {ORV_BAD_OBJECT};
  const column_segment* const segment = place.in->find_segment(tag);
  if (segment == nullptr) return {ORV_BAD_COLUMN};
  if (column < first_declared_column) return {};
  const std::uint32_t declared = column - first_declared_column;
  if (declared >= segment->count) return {ORV_BAD_COLUMN};
  const ovcoredb::column& values = place.in->columns[segment->first + declared];
  context.columns.put(column, tag, objects.run_of(number), values);
  return {ORV_OK, &values, place.row};
}

}  // namespace ovcoredb
