#ifndef OVHOST_SCHEMA_INDEX_RANGE_HPP_
#define OVHOST_SCHEMA_INDEX_RANGE_HPP_

#include <cstdint>
#include <optional>
#include <vector>

#include "ovcoredb/ovcoredb.h"
#include "ovhost/schema/index_key.hpp"

namespace ovhost {

// Returns the objects whose keys equal the given one, or begin with it, in index order. Throws core_error.
std::vector<OV_OBJ_REF> objects_with_key(std::uint64_t context, std::uint64_t index, const index_key& key);

// Returns the first of these objects.
std::optional<OV_OBJ_REF> first_with_key(std::uint64_t context, std::uint64_t index, const index_key& key);

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_INDEX_RANGE_HPP_
