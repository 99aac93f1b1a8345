#ifndef OVHOST_SCHEMA_SYSTEM_MEMBER_HPP_
#define OVHOST_SCHEMA_SYSTEM_MEMBER_HPP_

#include <array>
#include <cstdint>
#include <string_view>

#include "ovhost/values/value_kind.hpp"

namespace ovhost {

// The members that every table declares: columns 0 and 1.
struct system_member {
  std::string_view name;
  std::uint32_t column;
  value_kind kind;
};

inline constexpr std::array<system_member, 2> system_members = {{{"object_number", 0, value_kind::uint64},  //
                                                                 {"object_type", 1, value_kind::set_specifier}}};

inline constexpr std::uint32_t object_type_column = 1;

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_SYSTEM_MEMBER_HPP_
