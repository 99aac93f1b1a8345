#ifndef OVHOST_SCHEMA_METADATA_WRITER_HPP_
#define OVHOST_SCHEMA_METADATA_WRITER_HPP_

#include <cstdint>
#include <map>
#include <string_view>

#include "ovcoredb/database.hpp"
#include "ovhost/values/value_kind.hpp"

namespace ovhost {

// Writes metadata objects, laid out as layout.hpp numbers their columns. Checks nothing.
class metadata_writer {
 public:
  // Creates the metadata's tables and indexes and an object for each primitive type.
  explicit metadata_writer(ovcoredb::database& database);

  OV_OBJ_REF add_table(std::u16string_view name, OV_OBJ_REF base, std::uint16_t tag);
  void add_set_specifier(std::u16string_view specifier, std::u16string_view type_name);
  OV_OBJ_REF add_member(OV_OBJ_REF table, std::u16string_view name, OV_OBJ_REF type, std::uint32_t column);
  OV_OBJ_REF add_index(OV_OBJ_REF table, std::u16string_view name, std::uint64_t handle, bool unique);
  void add_indexed_column(OV_OBJ_REF index, OV_OBJ_REF member, std::uint64_t position, bool ascending);

  // Returns the object of a primitive type.
  OV_OBJ_REF type_of(value_kind kind) const { return types_.at(kind); }

 private:
  void create_tables();
  void create_indexes();
  void add_types();

  ovcoredb::database& database_;
  std::map<value_kind, OV_OBJ_REF> types_;
};

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_METADATA_WRITER_HPP_
