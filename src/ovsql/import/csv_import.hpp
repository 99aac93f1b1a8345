#ifndef OVSQL_IMPORT_CSV_IMPORT_HPP_
#define OVSQL_IMPORT_CSV_IMPORT_HPP_

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ovsql/errors/export.hpp"
#include "ovsql/session/database.hpp"

namespace ovsql {

struct csv_import_options {
  std::string table = {};                         // empty: named after the file
  std::optional<char> delimiter = {};             // nothing: guessed among , ; tab and |
  bool header = true;                             // whether the first row holds headings
  std::string null_text = {};                     // fields that mean NULL, besides the empty one
  std::map<std::string, std::string> types = {};  // SQL types by column, instead of what the fields look like
};

struct imported_column {
  std::string name;
  std::string heading;  // in the file
  std::string type;     // in SQL
};

struct csv_import {
  std::string table;
  std::vector<imported_column> columns;
  std::uint64_t rows;
};

// Makes a table of a CSV file. Reads the file twice: once for the columns' types, once for the rows. All of it is
// looked at, so the first pass finds what is wrong with the file before the table exists.
//
//   INTEGER  whole numbers that fit 64 bits
//   DECIMAL  also those with at most six digits after the point and a magnitude below 4,398,046,511,104
//   DOUBLE   also other numbers with a point or an exponent
//   BOOL     true and false
//   TEXT     everything else: dates, 00501, whole numbers beyond 64 bits, mixtures, columns without values
//
// The names of the table and its columns are made to ones that need no quotes: "Net price (EUR)" becomes Net_price_EUR,
// "order" order_, an empty heading column3, a second "name" name_2.
//
// Throws error: of kind input for what is wrong with the file, with its line and column in the message; of kind name
// for a table that exists, or a type for a column that does not. The database is then as it was.
OVSQL_API csv_import import_csv(database& into, const std::string& path, const csv_import_options& options = {});

}  // namespace ovsql

#endif  // OVSQL_IMPORT_CSV_IMPORT_HPP_
