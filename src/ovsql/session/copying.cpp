#include <fstream>
#include <streambuf>

#include "ovhost/csv/csv_loader.hpp"
#include "ovhost/plans/expressions.hpp"
#include "ovhost/plans/plans.hpp"
#include "ovsql/session/run_errors.hpp"
#include "ovsql/session/statement_state.hpp"

namespace ovsql {
namespace {

// A file with a line before it that it does not have.
class prefixed_file : public std::streambuf {
 public:
  prefixed_file(std::string line, std::streambuf& file) : line_(std::move(line)), file_(file) {
    setg(line_.data(), line_.data(), line_.data() + line_.size());
  }

 protected:
  int_type underflow() override {
    const std::streamsize count = file_.sgetn(buffer_, sizeof(buffer_));
    if (count <= 0) return traits_type::eof();
    setg(buffer_, buffer_, buffer_ + count);
    return traits_type::to_int_type(buffer_[0]);
  }

 private:
  std::string line_;
  std::streambuf& file_;
  char buffer_[1 << 16] = {};
};

std::string csv_field(const std::string& of) {
  std::string made = "\"";
  for (const char each : of) made += each == '"' ? "\"\"" : std::string(1, each);
  return made + "\"";
}

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
      throw error(error_kind::constraint,
                  "column " + quoted(of.columns[at].property.name) + " of table " + quoted(of.name()) +
                      " is NOT NULL, and the file has a row without a value for it");
    }
  }
}

}  // namespace

std::uint64_t copy(database_state& db, const syntax::copy_from& of) {
  const table* const into = db.catalog.find_table(of.table.text);
  if (into == nullptr) {
    throw error(error_kind::name, "there is no table " + quoted(of.table.text), of.table.at.begin);
  }
  ovhost::csv_options how;
  how.separator = of.delimiter;
  std::vector<std::size_t> columns;
  for (const syntax::name& each : of.columns) {
    const auto column = into->find_column(each.text);
    if (!column) {
      throw error(error_kind::name, "table " + quoted(into->name()) + " has no column " + quoted(each.text),
                  each.at.begin);
    }
    columns.push_back(*column);
  }
  if (columns.empty()) {
    for (std::size_t at = 0; at < into->columns.size(); ++at) columns.push_back(at);
  }
  std::string headings;
  for (std::size_t at = 0; at < into->columns.size(); ++at) {
    ovhost::csv_column column{into->columns[at].property.name};
    if (of.null_text) column.null_words.emplace_back(*of.null_text);
    if (into->columns[at].target != nullptr) column.key = key_of(*into->columns[at].target, column.property);
    how.columns.push_back(std::move(column));
  }
  for (const std::size_t at : columns) {
    headings += (headings.empty() ? "" : std::string(1, of.delimiter)) + csv_field(into->columns[at].property.name);
  }
  const std::string path(of.path);
  std::ifstream file(path, std::ios::binary);
  if (!file) throw error(error_kind::input, path + ": the file cannot be opened");
  prefixed_file with_headings(headings + "\n", *file.rdbuf());
  std::istream prefixed(&with_headings);
  ovcoredb::savepoint before(*db.core);
  const std::uint64_t objects = db.core->object_count();
  const std::size_t count = ovhost::load_csv(*db.core, into->name(), of.header ? file : prefixed, path, how);
  require_not_null(db, *into, objects);
  before.keep();
  if (db.catalog.knows_row_count(*into)) {
    db.catalog.set_row_count(*into, db.catalog.row_count(*into) + static_cast<double>(count));
  }
  return count;
}

}  // namespace ovsql
