#ifndef OVHOST_CSV_CSV_LOADER_HPP_
#define OVHOST_CSV_CSV_LOADER_HPP_

#include <cstddef>
#include <istream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ovcoredb/database.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// How the values of one property are written in a file.
struct csv_column {
  std::string property;
  std::string header = {};                   // its heading in the file; empty: the property's name
  std::vector<std::string> null_words = {};  // fields that mean NULL, besides the empty one
  std::string key = {};                      // a reference: the property of the target table that the field names it by
};

struct csv_options {
  std::vector<csv_column> columns = {};  // a property that is not listed has a column of its name
  char separator = ',';

  // The first row holds headings. Without them the properties are listed here, in the order of the fields; with them a
  // list that is not empty replaces the headings, which are then not looked at.
  bool headings = true;
  std::vector<std::string> order = {};
};

// A file that does not fit its table. The message begins "FILE:LINE: column NAME: ", as far as these apply.
class OVHOST_API csv_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Loads rows of comma-separated UTF-8 text into a table and returns their number. Properties without a column are NULL,
// and so are empty fields; a quoted empty field is the empty text. Loads all rows or, when it throws, none. Reads
// metadata on the thread's metadata context, which must be one on this database (see session). file_name is for
// messages only.
//
// Throws csv_error for what is wrong with the file, unknown_name for a table or property that does not exist, and
// std::invalid_argument for a reference column without a key by which its target is looked up, and for a file whose
// columns neither headings nor a list name.
OVHOST_API std::size_t load_csv(ovcoredb::database& database, std::string_view table, std::istream& input,
                                const std::string& file_name, const csv_options& options = {});

// Loads a file. Throws csv_error for a file that cannot be opened, too.
OVHOST_API std::size_t load_csv_file(ovcoredb::database& database, std::string_view table, const std::string& path,
                                     const csv_options& options = {});

}  // namespace ovhost

#endif  // OVHOST_CSV_CSV_LOADER_HPP_
