#ifndef OVHOST_SCHEMA_CORE_ERROR_HPP_
#define OVHOST_SCHEMA_CORE_ERROR_HPP_

#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "ovhost/values/export.hpp"

namespace ovhost {

// Reports a call of the core that failed while metadata were read, with its status (see ovcoredb.h).
class OVHOST_API core_error : public std::runtime_error {
 public:
  core_error(std::uint32_t status, std::string_view action);  // action: "opening a range"
  core_error(const core_error&) = default;
  core_error& operator=(const core_error&) = default;
  ~core_error() override;

  std::uint32_t status() const { return status_; }

 private:
  std::uint32_t status_;
};

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_CORE_ERROR_HPP_
