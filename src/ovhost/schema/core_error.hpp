#ifndef OVHOST_SCHEMA_CORE_ERROR_HPP_
#define OVHOST_SCHEMA_CORE_ERROR_HPP_

#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace ovhost {

// A call of the core that failed while metadata were read.
class core_error : public std::runtime_error {
 public:
  core_error(std::uint32_t status, std::string_view doing);
  std::uint32_t status() const { return status_; }

 private:
  std::uint32_t status_;
};

// Throws core_error unless the status is ORV_OK. doing: "opening a range".
void require_ok(std::uint32_t status, std::string_view doing);

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_CORE_ERROR_HPP_
