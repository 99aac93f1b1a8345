#include "ovhost/schema/core_error.hpp"

#include <string>

namespace ovhost {

core_error::core_error(std::uint32_t status, std::string_view action)
    : std::runtime_error("core status " + std::to_string(status) + " while " + std::string(action)), status_(status) {}

core_error::~core_error() = default;

}  // namespace ovhost
