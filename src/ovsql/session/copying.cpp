#include <string>
#include <vector>

#include "ovhost/csv/csv_loader.hpp"
#include "ovhost/plans/expressions.hpp"
#include "ovhost/plans/plans.hpp"
#include "ovsql/session/run_errors.hpp"
#include "ovsql/session/statement_state.hpp"

namespace ovsql {
namespace {

// The column by which a field names the object that it refers to: the only one of a unique index.
std::string key_of(const table& target, const std::string& column) {
  for (const index& each : target.indexes) {
    const bool fits = each.unique && each.key.size() == 1 && each.key[0].column != index_key_column::object_number;
    if (fits) return target.columns[each.key[0].column].property.name;
  }
  throw error(error_kind::unsupported, "column " + quoted(column) + " refers to table " + quoted(target.name()) +
                                           ", which has no key of one column to find objects by");
}

void require_not_null(database_state& db, const table& of, std::uint64_t before) {
  for (std::size_t at = 0; at < of.columns.size(); ++at) {
    if (!db.catalog.rule(of, at).not_null) continue;
    statement test(nullptr);
    database reading(*db.core, *db.schema);
    std::string sql = "SELECT object_number(t) FROM " + quoted(of.name()) + " t WHERE " +
                      quoted(of.columns[at].property.name) + " IS NULL AND object_number(t) > " +
                      std::to_string(before) + " LIMIT 1";
    test = reading.prepare(sql);
    if (test.step()) {
      throw error(error_kind::constraint, "column " + quoted(of.columns[at].property.name) + " of table " +
                                              quoted(of.name()) +
                                              " is NOT NULL, and the file has a row without a value for it");
    }
  }
}

const table& table_to_fill(const database_state& db, const syntax::name& named) {
  const table* const found = db.catalog.find_table(named.text);
  if (found == nullptr) throw error(error_kind::name, "there is no table " + quoted(named.text), named.at.begin);
  return *found;
}

const std::string& find_column(const table& in, const syntax::name& named) {
  const auto column = in.find_column(named.text);
  if (column) return in.columns[*column].property.name;
  throw error(error_kind::name, "table " + quoted(in.name()) + " has no column " + quoted(named.text), named.at.begin);
}

// The properties in the order of the file's columns: as they are listed, else as the headings say, else all of them.
std::vector<std::string> order_of(const syntax::copy_from& of, const table& into) {
  std::vector<std::string> order;
  for (const syntax::name& each : of.columns) order.push_back(find_column(into, each));
  if (!order.empty() || of.header) return order;
  for (const auto& each : into.columns) order.push_back(each.property.name);
  return order;
}

ovhost::csv_options options_of(const syntax::copy_from& of, const table& into) {
  ovhost::csv_options how;
  how.separator = of.delimiter;
  how.headings = of.header;
  how.order = order_of(of, into);
  for (const auto& each : into.columns) {
    ovhost::csv_column column{each.property.name};
    if (of.null_text) column.null_words.emplace_back(*of.null_text);
    if (each.target != nullptr) column.key = key_of(*each.target, column.property);
    how.columns.push_back(std::move(column));
  }
  return how;
}

}  // namespace

std::uint64_t copy(database_state& db, const syntax::copy_from& of) {
  const table& into = table_to_fill(db, of.table);
  const ovhost::csv_options how = options_of(of, into);
  ovcoredb::savepoint before(*db.core);
  const std::uint64_t objects = db.core->object_count();
  const std::size_t count = ovhost::load_csv_file(*db.core, into.name(), std::string(of.path), how);
  require_not_null(db, into, objects);
  before.keep();
  if (db.catalog.knows_row_count(into)) {
    db.catalog.set_row_count(into, db.catalog.row_count(into) + static_cast<double>(count));
  }
  return count;
}

}  // namespace ovsql
