// Reads metadata by name. It reads through the C interface and the indexes of the metadata layer, so it works on any
// core whose metadata are laid out as metalayer.hpp describes.
#ifndef OVHOST_SCHEMA_CATALOG_HPP_
#define OVHOST_SCHEMA_CATALOG_HPP_

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ov_sql_executor/database/table_cache.hpp"
#include "ovcoredb/ovcoredb.h"
#include "ovdbmetalayer/metalayer.hpp"
#include "ovhost/values/export.hpp"
#include "ovhost/values/value_kind.hpp"

namespace ovhost {

// Reports a table, property or index that the metadata do not have. The message lists the names that they have.
class OVHOST_API unknown_name : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct table_info {
  OV_OBJ_REF object{};
  std::string name;
  std::uint16_t tag = 0;
  OV_OBJ_REF base{};  // the null reference for none
};

struct property_info {
  OV_OBJ_REF object{};
  std::string name;
  OV_OBJ_REF declared_in{};
  value_kind kind = value_kind::null;
  OV_OBJ_REF target{};  // the table that a reference refers to
  std::uint32_t column = 0;
};

struct key_column_info {
  property_info property;
  bool ascending = true;
};

struct index_info {
  OV_OBJ_REF object{};
  std::string name;
  std::uint64_t handle = 0;
  bool unique = false;
  std::vector<key_column_info> columns;  // in key order
};

// Reads on one context, by default the thread's current metadata context (see session). Keeps nothing between calls;
// what it returns belongs to the caller. Requires: the context outlives the catalog. Throws core_error where the core
// refuses a read, and std::invalid_argument for a name that is not UTF-8.
class OVHOST_API catalog {
 public:
  explicit catalog(std::uint64_t context = metalayer::TlsMetalayerContext::Current()) : context_(context) {}

  std::uint64_t context() const { return context_; }

  std::vector<table_info> tables() const;  // by name
  std::optional<table_info> find_table(std::string_view name) const;
  table_info table(std::string_view name) const;  // throws unknown_name
  table_info table(OV_OBJ_REF object) const;      // of a metadata object

  // Returns the properties of a table's objects in column order, those of its outermost base first. Leaves out the two
  // that every table has.
  std::vector<property_info> properties(const table_info& table) const;

  // Finds a property of the table or of one that it derives from. Finds the two that every table has, too:
  // object_number and object_type. property throws unknown_name.
  std::optional<property_info> find_property(const table_info& table, std::string_view name) const;
  property_info property(const table_info& table, std::string_view name) const;
  property_info property(OV_OBJ_REF object) const;

  // Returns the indexes over the objects of the table itself, by name. Leaves out those of its bases, which hold other
  // objects, too.
  std::vector<index_info> indexes(const table_info& table) const;
  std::optional<index_info> find_index(const table_info& table, std::string_view name) const;
  index_info index(const table_info& table, std::string_view name) const;  // throws unknown_name
  index_info index(OV_OBJ_REF object) const;

  // Tells whether the name, with case folded, names a type.
  bool is_type_name(std::string_view name) const;

  // Returns the members that the table declares, by column index.
  std::shared_ptr<meta_data::Table::TableCache> members(const table_info& table) const;

 private:
  std::vector<OV_OBJ_REF> member_objects(OV_OBJ_REF table) const;

  std::uint64_t context_;
};

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_CATALOG_HPP_
