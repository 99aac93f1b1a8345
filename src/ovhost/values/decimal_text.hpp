#ifndef OVHOST_VALUES_DECIMAL_TEXT_HPP_
#define OVHOST_VALUES_DECIMAL_TEXT_HPP_

#include <optional>
#include <string>
#include <string_view>

#include "ov_sql_executor/values/decimal.hpp"

namespace ovhost {

// "-12.5": an optional minus, digits, and up to six digits after a point. Nothing for any other text and for numbers
// out of range: nothing is rounded.
std::optional<operator_library::Decimal> parse_decimal(std::string_view text);

// Without zeros at the end: "-12.5", "3".
std::string to_text(operator_library::Decimal number);

}  // namespace ovhost

#endif  // OVHOST_VALUES_DECIMAL_TEXT_HPP_
