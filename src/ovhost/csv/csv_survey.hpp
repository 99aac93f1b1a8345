#ifndef OVHOST_CSV_CSV_SURVEY_HPP_
#define OVHOST_CSV_CSV_SURVEY_HPP_

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ovhost/values/export.hpp"
#include "ovhost/values/value_kind.hpp"

namespace ovhost {

struct csv_survey_options {
  std::optional<char> separator = {};        // nothing: it is guessed
  bool headings = true;                      // whether the first row holds headings
  std::vector<std::string> null_words = {};  // fields that mean NULL, besides the empty one

  // What the caller takes columns for, by position; nothing, or a shorter list: whatever they hold. No references.
  std::vector<std::optional<value_kind>> kinds = {};
};

struct surveyed_column {
  std::string heading;  // empty where there is none
  value_kind kind;
};

// What a file of separated values holds.
struct csv_survey {
  char separator;
  std::vector<surveyed_column> columns;
  std::size_t rows;  // without the headings
};

// Looks at every field of a file and says which kind holds all of a column, so that load_csv reads the file back
// without loss:
//
//   int64    whole numbers that fit
//   decimal  also those with at most six digits after the point and a magnitude that fits
//   float64  also other numbers with a point or an exponent
//   boolean  true and false
//   text     everything else: dates, numbers with leading zeros such as 00501, whole numbers beyond int64, mixtures,
//   and
//            columns without any value
//
// Throws csv_error for a file that cannot be opened or is empty, for malformed rows, rows of another length than the
// first, and fields that are not UTF-8, hold a zero character, or are not of the kind that the caller takes them for.
OVHOST_API csv_survey survey_csv_file(const std::string& path, const csv_survey_options& options = {});
OVHOST_API csv_survey survey_csv(std::istream& input, const std::string& file_name, char separator,
                                 const csv_survey_options& options = {});

// Returns which of , ; tab and | cuts the first rows of a file into the same number of fields, into most of them where
// several do. The comma if none does.
OVHOST_API char guess_separator(std::string_view beginning);

}  // namespace ovhost

#endif  // OVHOST_CSV_CSV_SURVEY_HPP_
