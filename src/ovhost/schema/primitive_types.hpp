#ifndef OVHOST_SCHEMA_PRIMITIVE_TYPES_HPP_
#define OVHOST_SCHEMA_PRIMITIVE_TYPES_HPP_

#include <array>
#include <cstdint>
#include <string_view>

#include "ovcoredb/database.hpp"
#include "ovhost/values/value_kind.hpp"

namespace ovhost {

// A type that members can have, in its three numberings.
struct primitive_type {
  std::string_view name;  // of its metadata object
  value_kind kind;
  std::uint64_t number;  // in the metadata
  ovcoredb::column_type column;
};

// All types but references, whose types are tables.
extern const std::array<primitive_type, 8> primitive_types;

// Returns the kind of values that a type with this number has. Throws std::runtime_error for a number that no type has.
value_kind kind_of_primitive(std::uint64_t number);

// Returns the column type for values of a kind, also of references. Throws std::invalid_argument for kinds that no
// column has.
ovcoredb::column_type column_type_of(value_kind kind);

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_PRIMITIVE_TYPES_HPP_
