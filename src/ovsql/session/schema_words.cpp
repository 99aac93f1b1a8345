#include <string>

#include "ovhost/values/value_words.hpp"
#include "ovsql/binding/types.hpp"
#include "ovsql/session/state.hpp"
#include "ovsql/syntax/keyword.hpp"

namespace ovsql {
namespace {

// A name as a statement has it, in quotes where it needs them.
std::string written(std::string_view name) {
  std::uint32_t hash = 0;
  bool is_plain = !name.empty() && (name.front() < '0' || name.front() > '9');
  for (const char each : name) {
    const char low = fold_ascii(each);
    is_plain = is_plain && ((low >= 'a' && low <= 'z') || (each >= '0' && each <= '9') || each == '_');
    hash = syntax::add_to_hash(hash, each);
  }
  if (is_plain && !syntax::is_reserved(syntax::find_keyword(name, hash))) return std::string(name);
  std::string made = "\"";
  for (const char each : name) made += each == '"' ? "\"\"" : std::string(1, each);
  return made + "\"";
}

std::string type_of(const table_column& column) {
  switch (column.property.kind) {
    case value_kind::reference:
      return column.target != nullptr ? "REFERENCES " + written(column.target->name()) : "REFERENCES";
    case value_kind::int64:
      return "INTEGER";
    case value_kind::uint64:
      return "UNSIGNED BIGINT";
    case value_kind::decimal:
      return "DECIMAL";
    case value_kind::float64:
      return "DOUBLE";
    case value_kind::float32:
      return "FLOAT4";
    case value_kind::boolean:
      return "BOOLEAN";
    case value_kind::binary:
      return "BLOB";
    default:
      return "TEXT";
  }
}

std::string key_of(const table& of, const index& key) {
  std::string columns;
  for (const index_key_column& each : key.key) {
    if (each.column == index_key_column::object_number) return {};
    columns += (columns.empty() ? "" : ", ") + written(of.columns[each.column].property.name);
    if (!each.ascending) columns += " DESC";
  }
  return "(" + columns + ")";
}

bool is_primary(const index& of) { return of.unique && of.name == "primary_key"; }

std::string create_table(const catalog& names, const table& of) {
  const table* const base = names.table_of(of.info.base);
  std::string lines;
  for (std::size_t at = base != nullptr ? base->columns.size() : 0; at < of.columns.size(); ++at) {
    const column_rule rule = names.rule(of, at);
    lines += (lines.empty() ? "\n  " : ",\n  ") + written(of.columns[at].property.name) + " " + type_of(of.columns[at]);
    if (rule.not_null) lines += " NOT NULL";
    if (rule.default_value) lines += " DEFAULT " + ovhost::literal_words(*rule.default_value, "");
  }
  for (const index& each : of.indexes) {
    if (is_primary(each)) lines += std::string(lines.empty() ? "\n  " : ",\n  ") + "PRIMARY KEY " + key_of(of, each);
  }
  const std::string inherits = base != nullptr ? " INHERITS (" + written(base->name()) + ")" : "";
  return "CREATE TABLE " + written(of.name()) + " (" + lines + "\n)" + inherits + ";";
}

}  // namespace

std::vector<std::string> database::schema(std::string_view name) const {
  const catalog& names = state_->catalog;
  if (const view* const found = names.find_view(name)) return {found->text + ";"};
  const table* const found = names.find_table(name);
  if (found == nullptr) throw error(error_kind::name, "there is no table " + quoted(name));
  std::vector<std::string> statements = {create_table(names, *found)};
  for (const index& each : found->indexes) {
    const std::string key = key_of(*found, each);
    if (key.empty() || is_primary(each)) continue;
    statements.push_back(std::string(each.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + written(each.name) +
                         " ON " + written(found->name()) + " " + key + ";");
  }
  return statements;
}

}  // namespace ovsql
