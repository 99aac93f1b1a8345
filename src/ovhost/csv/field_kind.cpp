#include "ovhost/csv/field_kind.hpp"

#include <cstdint>

#include "ovhost/csv/field_text.hpp"
#include "ovhost/values/decimal_text.hpp"
#include "ovhost/values/number_text.hpp"

namespace ovhost {
namespace {

constexpr std::string_view decimal_digits = "0123456789";

bool all_digits(std::string_view text) { return text.find_first_not_of(decimal_digits) == std::string_view::npos; }

// A number without a point or an exponent.
bool is_whole(std::string_view number) { return all_digits(number.substr(number.starts_with('-') ? 1 : 0)); }

// A number that begins with digits that it would lose.
bool has_leading_zeros(std::string_view number) {
  if (number.starts_with('-')) number.remove_prefix(1);
  return number.size() > 1 && number.front() == '0' && decimal_digits.find(number[1]) != std::string_view::npos;
}

// Leaves the words out that stand for numbers, inf and nan.
bool is_real(std::string_view number) {
  if (number.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return false;
  return parse_number<double>(number).has_value();
}

bool is_number(std::string_view number) { return !has_leading_zeros(number) && is_real(number); }

}  // namespace

void field_kinds::add(std::string_view field) {
  const std::string_view word = without_blanks(field);
  any_ = true;
  may_be_truth_ = may_be_truth_ && (is_word(word, "true") || is_word(word, "false"));
  may_be_real_ = may_be_real_ && is_number(word);
  if (!may_be_real_) may_be_int_ = may_be_decimal_ = false;
  const bool fits = may_be_real_ && parse_number<std::int64_t>(word).has_value();
  // As a double, a whole number beyond int64 would lose digits.
  if (may_be_real_ && is_whole(word) && !fits) may_be_real_ = may_be_decimal_ = false;
  may_be_int_ = may_be_int_ && fits;
  may_be_decimal_ = may_be_decimal_ && parse_decimal(word).has_value();
}

value_kind field_kinds::kind() const {
  if (!any_) return value_kind::text;
  if (may_be_truth_) return value_kind::boolean;
  if (may_be_int_) return value_kind::int64;
  if (may_be_decimal_) return value_kind::decimal;
  return may_be_real_ ? value_kind::float64 : value_kind::text;
}

}  // namespace ovhost
