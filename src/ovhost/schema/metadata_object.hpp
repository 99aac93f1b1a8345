#ifndef OVHOST_SCHEMA_METADATA_OBJECT_HPP_
#define OVHOST_SCHEMA_METADATA_OBJECT_HPP_

#include <cstdint>
#include <string>

#include "ovcoredb/ovcoredb.h"

namespace ovhost {

// Reads one object of the metadata through the C interface. A column without a value reads as an empty text, 0 or the
// null reference. Throws core_error.
class metadata_object {
 public:
  metadata_object(std::uint64_t context, OV_OBJ_REF object) : context_(context), object_(object) {}

  std::u16string text(std::uint32_t column) const;
  std::uint64_t number(std::uint32_t column) const;  // uint64 columns
  std::int64_t integer(std::uint32_t column) const;  // int64 columns
  bool flag(std::uint32_t column) const;
  OV_OBJ_REF reference(std::uint32_t column) const;

 private:
  std::uint64_t context_;
  OV_OBJ_REF object_;
};

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_METADATA_OBJECT_HPP_
