#include "ovhost/csv/csv_loader.hpp"

#include <algorithm>
#include <fstream>
#include <memory>
#include <optional>
#include <utility>

#include "ovhost/csv/csv_reader.hpp"
#include "ovhost/csv/field_reader.hpp"
#include "ovhost/csv/reference_reader.hpp"
#include "ovhost/schema/catalog.hpp"

namespace ovhost {
namespace {

using ovcoredb::cell;

// One column of the file.
struct column_plan {
  std::string header;
  std::size_t cell = 0;  // its position among the table's cells
  std::vector<std::string> null_words;
  std::unique_ptr<field_reader> reader;
};

class csv_load {
 public:
  csv_load(ovcoredb::database& database, std::string_view table, std::istream& input, const std::string& file,
           const csv_options& options)
      : database_(database),
        table_(names_.table(table)),
        properties_(names_.properties(table_)),
        options_(options),
        file_(file),
        reader_(input, options.separator) {
    for (const csv_column& each : options.columns) names_.property(table_, each.property);
  }

  std::size_t run() {
    plan_columns(options_.headings ? read_headings() : csv_row{});
    ovcoredb::savepoint before(database_);
    std::size_t count = 0;
    for (; const auto row = next_row(); ++count) load(*row);
    before.keep();
    return count;
  }

 private:
  [[noreturn]] void fail(std::size_t line, const std::string& reason) const {
    throw csv_error(file_ + ":" + std::to_string(line) + ": " + reason);
  }

  [[noreturn]] void fail(std::size_t line, const std::string& column, const std::string& reason) const {
    fail(line, "column " + column + ": " + reason);
  }

  std::optional<csv_row> next_row() {
    try {
      return reader_.next();
    } catch (const csv_syntax_error& error) {
      fail(error.line, error.reason);
    }
  }

  csv_row read_headings() {
    std::optional<csv_row> headings = next_row();
    if (!headings) fail(1, "the file is empty");
    return *std::move(headings);
  }

  void plan_columns(const csv_row& headings) {
    if (!options_.order.empty()) return plan_listed_columns(headings);
    if (!options_.headings) throw std::invalid_argument("a file without headings needs a list of its columns");
    for (const csv_field& heading : headings.fields) {
      add_column(headings.line, plan_column(headings.line, heading.value_or("")));
    }
  }

  void plan_listed_columns(const csv_row& headings) {
    for (const std::string& property : options_.order) {
      const std::size_t at = position_of(names_.property(table_, property).name);
      add_column(1, plan_column(at, options_of(properties_[at])));
    }
    if (options_.headings) check_width(headings);
  }

  void add_column(std::size_t line, column_plan plan) {
    if (std::any_of(columns_.begin(), columns_.end(), [&](const auto& each) { return each.cell == plan.cell; })) {
      fail(line, plan.header, "the property has two columns");
    }
    columns_.push_back(std::move(plan));
  }

  column_plan plan_column(std::size_t line, const std::string& header) const {
    for (std::size_t at = 0; at < properties_.size(); ++at) {
      const csv_column how = options_of(properties_[at]);
      if (how.header == header) return plan_column(at, how);
    }
    fail(line, header, "table \"" + table_.name + "\" has no such property");
  }

  column_plan plan_column(std::size_t at, const csv_column& how) const {
    return {how.header, at, how.null_words, make_reader(properties_[at], how)};
  }

  // Requires: the table has the property.
  std::size_t position_of(const std::string& property) const {
    const auto found = std::find_if(properties_.begin(), properties_.end(),
                                    [&](const property_info& each) { return each.name == property; });
    return static_cast<std::size_t>(found - properties_.begin());
  }

  csv_column options_of(const property_info& property) const {
    const auto given = std::find_if(options_.columns.begin(), options_.columns.end(),
                                    [&](const csv_column& each) { return each.property == property.name; });
    csv_column how = given == options_.columns.end() ? csv_column{property.name} : *given;
    if (how.header.empty()) how.header = property.name;
    return how;
  }

  std::unique_ptr<field_reader> make_reader(const property_info& property, const csv_column& how) const {
    if (property.kind != value_kind::reference) return make_field_reader(property.kind);
    if (how.key.empty()) {
      throw std::invalid_argument("property \"" + property.name + "\" is a reference; say by which key it is written");
    }
    return make_reference_reader(names_, names_.table(property.target), how.key);
  }

  void check_width(const csv_row& row) const {
    if (row.fields.size() == columns_.size()) return;
    fail(row.line, std::to_string(row.fields.size()) + " fields where the " +
                       (options_.order.empty() ? "headings" : "columns") + " are " + std::to_string(columns_.size()));
  }

  void load(const csv_row& row) {
    check_width(row);
    std::vector<cell> cells(properties_.size());
    for (std::size_t at = 0; at < columns_.size(); ++at) cells[columns_[at].cell] = read(row, at);
    try {
      database_.insert(table_.tag, cells);
    } catch (const ovcoredb::unique_violation& violation) {
      fail(row.line,
           "the row has the key of another object in the unique index \"" + name_of_index(violation.index()) + "\"");
    }
  }

  cell read(const csv_row& row, std::size_t at) {
    const csv_field& field = row.fields[at];
    const column_plan& column = columns_[at];
    if (!field || std::count(column.null_words.begin(), column.null_words.end(), *field) != 0) return {};
    try {
      return column.reader->read(*field);
    } catch (const bad_field& error) {
      fail(row.line, column.header, error.what());
    }
  }

  // Returns the name of an index of the table or of one of its bases.
  std::string name_of_index(std::uint64_t handle) const {
    for (table_info table = table_;; table = names_.table(table.base)) {
      for (const index_info& each : names_.indexes(table)) {
        if (each.handle == handle) return each.name;
      }
      if (table.base.object_number == 0) return std::to_string(handle);
    }
  }

  ovcoredb::database& database_;
  catalog names_;
  table_info table_;
  std::vector<property_info> properties_;  // in the order of the table's cells
  const csv_options& options_;
  std::string file_;
  csv_reader reader_;
  std::vector<column_plan> columns_;
};

}  // namespace

std::size_t load_csv(ovcoredb::database& database, std::string_view table, std::istream& input,
                     const std::string& file_name, const csv_options& options) {
  return csv_load(database, table, input, file_name, options).run();
}

std::size_t load_csv_file(ovcoredb::database& database, std::string_view table, const std::string& path,
                          const csv_options& options) {
  std::ifstream input(path, std::ios::binary);
  if (!input) throw csv_error(path + ": the file cannot be opened");
  return load_csv(database, table, input, path, options);
}

}  // namespace ovhost
