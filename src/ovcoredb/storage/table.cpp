#include "ovcoredb/storage/table.hpp"

#include <algorithm>
#include <cassert>

namespace ovcoredb {

void table::truncate(std::uint64_t count) {
  assert(count <= rows);
  for (column& each : columns) each.truncate(count);
  rows = count;
}

const column_segment* table::find_base_segment(std::uint16_t segment_tag) const {
  const auto found =
      std::find_if(segments.begin() + 1, segments.end(), [&](const auto& each) { return each.tag == segment_tag; });
  return found == segments.end() ? nullptr : &*found;
}

}  // namespace ovcoredb
