#include "ovsql/import/csv_import.hpp"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "ovhost/csv/csv_loader.hpp"
#include "ovhost/csv/csv_survey.hpp"
#include "ovsql/binding/types.hpp"
#include "ovsql/import/plain_names.hpp"

namespace ovsql {
namespace {

std::string quoted_name(const std::string& name) { return "\"" + name + "\""; }

std::string quoted_text(std::string_view text) {
  std::string quoted = "'";
  for (const char each : text) quoted += each == '\'' ? "''" : std::string(1, each);
  return quoted + "'";
}

std::string sql_type(value_kind kind) {
  switch (kind) {
    case value_kind::boolean:
      return "BOOL";
    case value_kind::int64:
      return "INTEGER";
    case value_kind::decimal:
      return "DECIMAL";
    case value_kind::float64:
      return "DOUBLE";
    default:
      return "TEXT";
  }
}

// As types are looked up: in lower case, without what follows in brackets.
std::string words_of_type(std::string_view type) {
  std::string words(type.substr(0, type.find('(')));
  words.erase(words.find_last_not_of(' ') + 1);
  std::transform(words.begin(), words.end(), words.begin(),
                 [](char each) { return each >= 'A' && each <= 'Z' ? static_cast<char>(each + 32) : each; });
  return words;
}

std::string joined(const std::vector<imported_column>& columns, bool with_types) {
  std::string list;
  for (const imported_column& each : columns) {
    list += (list.empty() ? "" : ", ") + quoted_name(each.name) + (with_types ? " " + each.type : "");
  }
  return list;
}

class importing {
 public:
  importing(database& into, const std::string& path, const csv_import_options& options)
      : into_(into), path_(path), options_(options) {}

  csv_import run() try {
    ovhost::csv_survey found = survey({});
    csv_import result{table_name(), columns_of(found), 0};
    // The core drops no table, so nothing may go wrong after it is made.
    if (!options_.types.empty()) found = survey(wanted_kinds(result.columns));
    into_.execute("CREATE TABLE " + quoted_name(result.table) + " (" + joined(result.columns, true) + ")");
    result.rows = into_.execute(loading(result, found.separator));
    return result;
  } catch (const error& failed) {
    // Its position is in a statement that nobody wrote.
    throw error(failed.kind(), failed.what());
  }

 private:
  ovhost::csv_survey survey(std::vector<std::optional<value_kind>> kinds) const try {
    require_file();
    ovhost::csv_survey_options how{options_.delimiter, options_.header, {}, std::move(kinds)};
    if (!options_.null_text.empty()) how.null_words = {options_.null_text};
    return ovhost::survey_csv_file(path_, how);
  } catch (const ovhost::csv_error& failed) {
    throw error(error_kind::input, failed.what());
  }

  // It is read more than once.
  void require_file() const {
    namespace fs = std::filesystem;
    if (fs::is_directory(path_)) throw error(error_kind::input, path_ + " is a folder");
    if (fs::exists(path_) && !fs::is_regular_file(path_)) throw error(error_kind::input, path_ + " is no plain file");
  }

  std::string table_name() const {
    if (!options_.table.empty()) return options_.table;
    const std::string name = plain_name(std::filesystem::path(path_).stem().string());
    return name.empty() ? "csv" : name;
  }

  std::vector<imported_column> columns_of(const ovhost::csv_survey& found) const {
    std::vector<std::string> headings;
    for (const auto& each : found.columns) headings.push_back(each.heading);
    std::vector<std::string> names = plain_column_names(headings);
    std::vector<imported_column> columns;
    for (std::size_t at = 0; at < names.size(); ++at) {
      columns.push_back({std::move(names[at]), std::move(headings[at]), sql_type(found.columns[at].kind)});
    }
    for (const auto& [column, type] : options_.types) find(columns, column).type = type;
    return columns;
  }

  imported_column& find(std::vector<imported_column>& columns, const std::string& name) const {
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const imported_column& each) {
      return same_plain_name(each.name, name) || each.heading == name;
    });
    if (found == columns.end()) throw error(error_kind::name, path_ + " has no column \"" + name + "\"");
    return *found;
  }

  static std::vector<std::optional<value_kind>> wanted_kinds(const std::vector<imported_column>& columns) {
    std::vector<std::optional<value_kind>> kinds;
    for (const imported_column& each : columns) {
      kinds.push_back(kind_named(words_of_type(each.type)));
      if (!kinds.back()) throw error(error_kind::type, "there is no type \"" + each.type + "\"");
    }
    return kinds;
  }

  std::string loading(const csv_import& made, char separator) const {
    std::string how = "DELIMITER " + quoted_text({&separator, 1});
    if (options_.header) how += ", HEADER";
    if (!options_.null_text.empty()) how += ", NULL " + quoted_text(options_.null_text);
    return "COPY " + quoted_name(made.table) + " (" + joined(made.columns, false) + ") FROM " + quoted_text(path_) +
           " WITH (" + how + ")";
  }

  database& into_;
  const std::string& path_;
  const csv_import_options& options_;
};

}  // namespace

csv_import import_csv(database& into, const std::string& path, const csv_import_options& options) {
  return importing(into, path, options).run();
}

}  // namespace ovsql
