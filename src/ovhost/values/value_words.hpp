#ifndef OVHOST_VALUES_VALUE_WORDS_HPP_
#define OVHOST_VALUES_VALUE_WORDS_HPP_

#include <string>
#include <string_view>

#include "ov_sql_executor/values/value.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// Writes a value as in a result table. NULL is NULL. Texts are bare, but the empty text and those that could be taken
// for something else are quoted; control characters are escaped. Numbers read back as the same number; binary is
// hexadecimal after 0x; a reference is its table's name and its object's number.
OVHOST_API std::string cell_words(const ov::sql_executor::value& of, std::string_view table_of_reference);

// Writes a value as a literal: 'text' with quotes doubled, everything else as in a table.
OVHOST_API std::string literal_words(const ov::sql_executor::value& of, std::string_view table_of_reference);

}  // namespace ovhost

#endif  // OVHOST_VALUES_VALUE_WORDS_HPP_
