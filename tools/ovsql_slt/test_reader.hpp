#ifndef OVSQL_SLT_TEST_READER_HPP_
#define OVSQL_SLT_TEST_READER_HPP_

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "test_record.hpp"

namespace slt {

// A file that is no test file; the message says what is wrong, line says where.
struct format_error : std::runtime_error {
  format_error(std::size_t at, const std::string& reason) : std::runtime_error(reason), line(at) {}
  std::size_t line;
};

// Cuts the text of a test file into records. Records are separated by empty lines; # begins a comment between them;
// lines end with LF or CRLF. The text outlives the reader and its records.
class test_reader {
 public:
  // engine: the name that skipif and onlyif look at.
  test_reader(std::string_view text, std::string_view engine) : text_(text), engine_(engine) {}

  // Returns the next record, or nothing at the end. Throws format_error.
  std::optional<test_record> next();

 private:
  bool take_line();
  bool take_line_of_record();
  bool is_condition(test_record& record);
  bool begin(test_record& record);
  void begin_statement(test_record& record);
  void begin_query(test_record& record);
  void read_sql(test_record& record);
  void read_expected(test_record& record);

  std::string_view text_;
  std::string_view engine_;
  std::size_t next_ = 0;        // a byte of the text
  std::size_t line_begin_ = 0;  // of the line taken last
  std::size_t line_number_ = 0;
  std::string_view line_;
  std::string_view words_;  // what is left of the line, word by word
};

}  // namespace slt

#endif  // OVSQL_SLT_TEST_READER_HPP_
