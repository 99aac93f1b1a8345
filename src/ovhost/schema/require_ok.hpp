#ifndef OVHOST_SCHEMA_REQUIRE_OK_HPP_
#define OVHOST_SCHEMA_REQUIRE_OK_HPP_

#include <cstdint>
#include <string_view>

#include "ovcoredb/ovcoredb.h"
#include "ovhost/schema/core_error.hpp"

namespace ovhost {

// Throws core_error unless the status is ORV_OK. action: "opening a range".
inline void require_ok(std::uint32_t status, std::string_view action) {
  if (status != ORV_OK) throw core_error(status, action);
}

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_REQUIRE_OK_HPP_
