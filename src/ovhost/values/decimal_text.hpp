#ifndef OVHOST_VALUES_DECIMAL_TEXT_HPP_
#define OVHOST_VALUES_DECIMAL_TEXT_HPP_

#include <optional>
#include <string>
#include <string_view>

#include "ov_sql_executor/values/decimal.hpp"

namespace ovhost {

// Reads "-12.5": an optional minus, digits, and up to six digits after a point. Gives nothing for any other text and
// for numbers out of range. Rounds nothing.
std::optional<operator_library::Decimal> parse_decimal(std::string_view text);

// Writes no zeros at the end: "-12.5", "3".
std::string to_text(operator_library::Decimal number);

}  // namespace ovhost

#endif  // OVHOST_VALUES_DECIMAL_TEXT_HPP_
