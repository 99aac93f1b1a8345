#ifndef OVSQL_CATALOG_CATALOG_HPP_
#define OVSQL_CATALOG_CATALOG_HPP_

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ov_sql_executor/values/value.hpp"
#include "ovhost/schema/catalog.hpp"
#include "ovsql/catalog/names.hpp"
#include "ovsql/syntax/memory.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql {

struct table;

struct table_column {
  ovhost::property_info property;  // its name, type and metadata object
  const table* target = nullptr;   // of a reference: the table that it refers to
};

struct index_key_column {
  std::size_t column;  // its position in the table; object_number for the object's number
  bool ascending = true;

  static constexpr std::size_t object_number = static_cast<std::size_t>(-1);
};

struct index {
  std::string name;
  OV_OBJ_REF object{};
  bool unique = false;
  std::vector<index_key_column> key;
};

struct table {
  ovhost::table_info info;
  std::vector<table_column> columns;  // those of the base first
  std::vector<index> indexes;
  std::shared_ptr<meta_data::Table::TableCache> members;

  const std::string& name() const { return info.name; }
  std::optional<std::size_t> find_column(std::string_view name) const;
  std::vector<std::string_view> column_names() const;

  // An index that holds all objects of the table, the cheapest to walk; null where there is none.
  const index* whole() const;
};

// A view is its text, parsed.
struct view {
  std::string text;
  syntax::memory memory;
  const syntax::create_view* definition = nullptr;
};

// What the metadata do not say of a column, since the core does not hold it.
struct column_rule {
  bool not_null = false;
  std::optional<ov::sql_executor::value> default_value{};
};

// The tables, columns and indexes of the database, read once and kept until they change, with the views and the rules
// that only this layer knows. Names are found without regard to the case of ASCII letters.
class catalog {
 public:
  // Reads all metadata on a context.
  void read(std::uint64_t context);

  const table* find_table(std::string_view name) const;
  const view* find_view(std::string_view name) const;
  const table* table_of(OV_OBJ_REF object) const;  // null where there is none

  const std::map<std::string, table, name_order>& tables() const { return tables_; }
  const std::map<std::string, std::shared_ptr<const view>, name_order>& views() const { return views_; }

  void add_view(const std::string& name, std::shared_ptr<const view> of) { views_[name] = std::move(of); }
  void drop_view(std::string_view name) { views_.erase(views_.find(name)); }

  // The rule of a table's column; one without restrictions where none is known.
  column_rule rule(const table& of, std::size_t column) const;
  void set_rule(const table& of, std::size_t column, column_rule rule);

  // How many rows the table has, as far as is known; planning decides by it, results do not depend on it.
  double row_count(const table& of) const;
  void set_row_count(const table& of, double count) { row_counts_[of.info.object.object_number] = count; }
  void forget_row_counts() { row_counts_.clear(); }
  bool knows_row_count(const table& of) const { return row_counts_.count(of.info.object.object_number) != 0; }

 private:
  std::map<std::string, table, name_order> tables_;
  std::map<std::uint64_t, const table*> by_object_;
  std::map<std::string, std::shared_ptr<const view>, name_order> views_;
  std::map<std::uint64_t, column_rule> rules_;  // by the property's metadata object
  std::map<std::uint64_t, double> row_counts_;  // by the table's metadata object
};

}  // namespace ovsql

#endif  // OVSQL_CATALOG_CATALOG_HPP_
