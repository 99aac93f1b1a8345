#ifndef OVHOST_CSV_FIELD_READER_HPP_
#define OVHOST_CSV_FIELD_READER_HPP_

#include <memory>
#include <stdexcept>
#include <string>

#include "ovcoredb/database.hpp"
#include "ovhost/values/value_kind.hpp"

namespace ovhost {

// A field that does not fit its column; the message says why.
class bad_field : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Turns text fields into cells of one type. Valid until: the next call, for a cell of text or bytes, which the reader
// lends.
class field_reader {
 public:
  virtual ~field_reader() = default;

  // Throws bad_field.
  virtual ovcoredb::cell read(const std::string& field) = 0;
};

// Makes a reader for cells of any kind but references. text: UTF-8. numbers: digits, with a point where the kind has
// one; a decimal has at most six digits after it. bool: true or false in any case. Blanks around these are skipped.
// binary: pairs of hexadecimal digits.
std::unique_ptr<field_reader> make_field_reader(value_kind kind);

}  // namespace ovhost

#endif  // OVHOST_CSV_FIELD_READER_HPP_
