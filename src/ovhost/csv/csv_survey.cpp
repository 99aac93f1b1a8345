#include "ovhost/csv/csv_survey.hpp"

#include <algorithm>
#include <fstream>
#include <memory>
#include <sstream>
#include <utility>

#include "ovhost/csv/csv_loader.hpp"
#include "ovhost/csv/csv_reader.hpp"
#include "ovhost/csv/field_kind.hpp"
#include "ovhost/csv/field_reader.hpp"
#include "ovhost/values/text.hpp"

namespace ovhost {
namespace {

// How much of a file is looked at to guess its separator.
constexpr std::size_t beginning_size = std::size_t{64} << 10;

class surveying {
 public:
  surveying(std::istream& input, const std::string& file, char separator, const csv_survey_options& options)
      : file_(file), options_(options), reader_(input, separator) {}

  csv_survey run(char separator) {
    std::optional<csv_row> row = next_row();
    if (!row) fail(1, "the file is empty");
    begin(*row);
    if (options_.headings) row = next_row();
    std::size_t rows = 0;
    for (; row; row = next_row(), ++rows) add(*row);
    return {separator, columns(), rows};
  }

 private:
  [[noreturn]] void fail(std::size_t line, const std::string& reason) const {
    throw csv_error(file_ + ":" + std::to_string(line) + ": " + reason);
  }

  std::optional<csv_row> next_row() {
    try {
      return reader_.next();
    } catch (const csv_syntax_error& error) {
      fail(error.line, error.reason);
    }
  }

  void begin(const csv_row& first) {
    kinds_.resize(first.fields.size());
    headings_.resize(first.fields.size());
    for (const auto& kind : options_.kinds) readers_.push_back(kind ? make_field_reader(*kind) : nullptr);
    readers_.resize(kinds_.size());
    if (!options_.headings) return;
    for (std::size_t at = 0; at < headings_.size(); ++at) {
      check_text(first, at);
      headings_[at] = first.fields[at].value_or("");
    }
  }

  void add(const csv_row& row) {
    if (row.fields.size() != kinds_.size()) {
      fail(row.line,
           std::to_string(row.fields.size()) + " fields where the first row has " + std::to_string(kinds_.size()));
    }
    for (std::size_t at = 0; at < kinds_.size(); ++at) add(row, at);
  }

  void add(const csv_row& row, std::size_t at) {
    const csv_field& field = row.fields[at];
    if (!field) return;
    check_text(row, at);
    const auto& nulls = options_.null_words;
    if (std::find(nulls.begin(), nulls.end(), *field) != nulls.end()) return;
    kinds_[at].add(*field);
    if (readers_[at]) check_kind(row, at);
  }

  void check_kind(const csv_row& row, std::size_t at) const {
    try {
      readers_[at]->read(*row.fields[at]);
    } catch (const bad_field& error) {
      fail(row.line, place_of(at) + error.what());
    }
  }

  std::string place_of(std::size_t at) const {
    return "column " + (headings_[at].empty() ? std::to_string(at + 1) : headings_[at]) + ": ";
  }

  void check_text(const csv_row& row, std::size_t at) const {
    if (!row.fields[at]) return;
    const std::string& text = *row.fields[at];
    if (text.find('\0') != std::string::npos) fail(row.line, place_of(at) + "the text holds a zero character");
    const bool is_ascii = std::all_of(text.begin(), text.end(), [](char byte) { return byte > 0; });
    if (!is_ascii && !utf8_to_utf16(text)) fail(row.line, place_of(at) + "the text is not UTF-8");
  }

  std::vector<surveyed_column> columns() {
    std::vector<surveyed_column> result;
    for (std::size_t at = 0; at < kinds_.size(); ++at) {
      result.push_back({std::move(headings_[at]), kinds_[at].kind()});
    }
    return result;
  }

  const std::string& file_;
  const csv_survey_options& options_;
  csv_reader reader_;
  std::vector<std::string> headings_;
  std::vector<field_kinds> kinds_;
  std::vector<std::unique_ptr<field_reader>> readers_;  // by column; null where the kind is the file's choice
};

// How well a separator fits the first rows: the number of fields, and whether all rows have it.
struct separator_fit {
  bool all_alike = true;
  std::size_t fields = 0;

  auto operator<=>(const separator_fit&) const = default;
};

separator_fit fit_of(std::string_view beginning, char separator) {
  std::istringstream input{std::string(beginning)};
  csv_reader reader(input, separator);
  separator_fit fit;
  try {
    while (const auto row = reader.next()) {
      if (fit.fields == 0) fit.fields = row->fields.size();
      fit.all_alike = fit.all_alike && row->fields.size() == fit.fields;
    }
  } catch (const csv_syntax_error&) {
    // A quoted field that was cut, or one that begins to be quoted only with this separator.
  }
  // One field a row says nothing.
  fit.all_alike = fit.all_alike && fit.fields > 1;
  return fit;
}

std::string read_beginning(std::istream& input) {
  std::string beginning(beginning_size, '\0');
  input.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
  beginning.resize(static_cast<std::size_t>(input.gcount()));
  if (beginning.size() == beginning_size) beginning.resize(beginning.find_last_of('\n') + 1);
  input.clear();
  input.seekg(0);
  return beginning;
}

}  // namespace

char guess_separator(std::string_view beginning) {
  char best = ',';
  separator_fit best_fit = fit_of(beginning, best);
  for (const char each : {';', '\t', '|'}) {
    const separator_fit fit = fit_of(beginning, each);
    if (fit > best_fit) best = each, best_fit = fit;
  }
  return best;
}

csv_survey survey_csv(std::istream& input, const std::string& file_name, char separator,
                      const csv_survey_options& options) {
  return surveying(input, file_name, separator, options).run(separator);
}

csv_survey survey_csv_file(const std::string& path, const csv_survey_options& options) {
  std::ifstream input(path, std::ios::binary);
  if (!input) throw csv_error(path + ": the file cannot be opened");
  const char separator = options.separator ? *options.separator : guess_separator(read_beginning(input));
  return survey_csv(input, path, separator, options);
}

}  // namespace ovhost
