#ifndef OVHOST_CSV_CSV_READER_HPP_
#define OVHOST_CSV_CSV_READER_HPP_

#include <cstddef>
#include <deque>
#include <exception>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct csv_parser;

namespace ovhost {

// A field; nothing for an empty one without quotes. With quotes it is the empty text.
using csv_field = std::optional<std::string>;

struct csv_row {
  std::size_t line = 0;  // where the row begins, from 1
  std::vector<csv_field> fields;
};

// Malformed CSV at a line.
struct csv_syntax_error {
  std::size_t line;
  std::string reason;
};

// Reads comma-separated rows as RFC 4180 has them: quoted fields may hold separators, line ends and doubled quotes;
// lines end with LF or CRLF. Blanks belong to their field. Empty lines and a byte order mark are skipped.
class csv_reader {
 public:
  explicit csv_reader(std::istream& input, char separator = ',');
  ~csv_reader();
  csv_reader(const csv_reader&) = delete;
  csv_reader& operator=(const csv_reader&) = delete;

  // Returns the next row, or nothing at the end. Throws csv_syntax_error.
  std::optional<csv_row> next();

 private:
  void feed_line();
  std::string read_line();
  void finish();
  void check(bool parsed) const;
  void end_row();

  static void on_field(void* bytes, std::size_t length, void* self);
  static void on_row(int end, void* self);

  std::istream& input_;
  std::unique_ptr<csv_parser> parser_;
  std::size_t line_ = 0;  // the line that was fed last
  bool finished_ = false;
  bool between_rows_ = true;
  csv_row row_;                   // being read
  std::deque<csv_row> complete_;  // read, but not handed out yet
  std::exception_ptr failure_;    // caught in a callback, which must not throw
};

}  // namespace ovhost

#endif  // OVHOST_CSV_CSV_READER_HPP_
