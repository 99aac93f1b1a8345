#ifndef OVSQL_SLT_VALUE_TEXT_HPP_
#define OVSQL_SLT_VALUE_TEXT_HPP_

#include <cstddef>
#include <string>

#include "ovsql/session/statement.hpp"

namespace slt {

// Writes a value as test files have it:
//
//   I  a whole number; a number with digits behind the point without them, a text from its first digits
//   R  three digits behind the point
//   T  the text, "(empty)" for the empty one, @ for each byte that is no printable ASCII character
//
// true is 1, NULL is "NULL". type is one of these letters.
std::string value_text(const ovsql::value& of, char type);

// Writes the value of a column of the current row. An object is its table's name and number.
std::string value_text(const ovsql::statement& row, std::size_t at, char type);

}  // namespace slt

#endif  // OVSQL_SLT_VALUE_TEXT_HPP_
