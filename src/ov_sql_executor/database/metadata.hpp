// Reads what planning needs to know of tables, properties and indexes. Reads everything anew on the calling thread's
// metadata-layer context. Every function throws db_util::db_exception with the core's status. A column without a value
// is no failure for names (empty) and references (the null reference).
#ifndef OV_SQL_EXECUTOR_DATABASE_METADATA_HPP_
#define OV_SQL_EXECUTOR_DATABASE_METADATA_HPP_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ov_sql_executor/database/table_cache.hpp"
#include "ov_sql_executor/values/type_code.hpp"
#include "ovcoredb/ovcoredb.h"

namespace meta_data {

using ov::sql_executor::type_code;

struct table_ref {
  OV_OBJ_REF table;
  std::shared_ptr<Table::TableCache> cache;
};

// One column of an index key.
struct key_column {
  type_code type;
  bool ascending;
};

// Reads the members of a table. Throws std::out_of_range "invalid vector<T> subscript" where their column indexes are
// not dense from 0.
table_ref make_table_ref(const OV_OBJ_REF& table);

// The name of a table, member or type, one UTF-16 unit per character.
std::wstring object_name(const OV_OBJ_REF& object);

// Returns the tag that selects the table's columns in a reference's second word.
std::uint16_t reference_tag(const table_ref& table);

std::uint16_t property_column(const OV_OBJ_REF& property);
table_ref property_table(const OV_OBJ_REF& property);  // the table that declares the property

// Throws OVException 7022 "unexpected type" when the property's type object is none of the value types.
type_code property_type(const OV_OBJ_REF& property);

// The metadata object of the property's type: the table it refers to for a reference, otherwise a primitive type.
OV_OBJ_REF property_type_object(const OV_OBJ_REF& property);

// The number under which the core knows an index.
std::uint64_t index_handle(const OV_OBJ_REF& index);

// The key columns of an index, in key order.
std::vector<key_column> index_key_columns(const OV_OBJ_REF& index);

}  // namespace meta_data

#endif  // OV_SQL_EXECUTOR_DATABASE_METADATA_HPP_
