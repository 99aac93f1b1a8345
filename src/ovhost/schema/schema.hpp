// Defines tables and indexes in a database of the embedded core and writes the metadata that describe them.
#ifndef OVHOST_SCHEMA_SCHEMA_HPP_
#define OVHOST_SCHEMA_SCHEMA_HPP_

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "ovcoredb/database.hpp"
#include "ovdbmetalayer/layout.hpp"
#include "ovhost/schema/catalog.hpp"
#include "ovhost/values/export.hpp"
#include "ovhost/values/value_kind.hpp"

namespace ovhost {

class metadata_writer;

// The type of a member whose values refer to objects of a table.
struct refers_to {
  std::string table;
};

struct member_definition {
  std::string name;  // names here and below are UTF-8
  std::variant<value_kind, refers_to> type;
};

struct table_definition {
  std::string name;  // may be dotted, "Shop.Order"; no part is empty, none holds '/'
  std::vector<member_definition> members;
  std::string base = {};  // the table that this one derives from: its objects have the base's members too
};

struct index_column {
  std::string property;  // of the table or of one that it derives from
  bool ascending = true;
};

struct index_definition {
  std::string table;
  std::string name;
  std::vector<index_column> columns;  // in key order
  bool unique = false;                // no two objects with equal keys; a key with a NULL equals none
};

// Reports a definition that is not possible; the message names what is wrong with it.
class OVHOST_API schema_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Defines what the database holds. Every call throws schema_error for a definition that is not possible, and
// unknown_name for tables and properties that are mentioned but do not exist. A call that throws, the constructor too,
// has defined nothing. Closes the iterators that are open on the database. Requires: meanwhile no other thread reads.
class OVHOST_API schema {
 public:
  // Writes the metadata's own tables and the primitive types. Requires: the database has no tables, and outlives the
  // schema.
  explicit schema(ovcoredb::database& database);
  ~schema();
  schema(const schema&) = delete;
  schema& operator=(const schema&) = delete;

  // Defines tables. Those that refer to each other are defined in one call; a base stands before what derives from it.
  void define_tables(const std::vector<table_definition>& definitions);
  void define_table(const table_definition& definition) { define_tables({definition}); }

  // Defines an index, over the objects that exist already, too. Throws ovcoredb::unique_violation where two of them
  // have equal keys.
  void define_index(const index_definition& definition);

 private:
  void create_table(const table_definition& definition, std::uint16_t tag);

  ovcoredb::database& database_;
  ovcoredb::context context_;
  catalog catalog_;
  std::unique_ptr<metadata_writer> writer_;
  // Begin above the metadata's own.
  std::uint16_t next_tag_ = metalayer::layout::table_tag::first_free;
  std::uint64_t next_handle_ = metalayer::layout::index_handle::first_free;
};

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_SCHEMA_HPP_
