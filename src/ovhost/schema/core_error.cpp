#include "ovhost/schema/core_error.hpp"

#include <string>

#include "ovcoredb/ovcoredb.h"

namespace ovhost {

core_error::core_error(std::uint32_t status, std::string_view doing)
    : std::runtime_error("core status " + std::to_string(status) + " while " + std::string(doing)), status_(status) {}

void require_ok(std::uint32_t status, std::string_view doing) {
  if (status != ORV_OK) throw core_error(status, doing);
}

}  // namespace ovhost
