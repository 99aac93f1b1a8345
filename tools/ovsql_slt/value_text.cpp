#include "value_text.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <type_traits>
#include <variant>

#include "ovhost/values/text.hpp"

namespace slt {
namespace {

using operator_library::Decimal;

std::string printable(std::string text) {
  if (text.empty()) return "(empty)";
  for (char& each : text) {
    if (each < ' ' || each > '~') each = '@';
  }
  return text;
}

std::string printed(const char* format, double number) {
  std::array<char, 400> buffer{};
  const int length = std::snprintf(buffer.data(), buffer.size(), format, number);
  return {buffer.data(), static_cast<std::size_t>(length)};
}

// Three digits behind the point, 16 significant ones at most and zeros after those.
std::string fixed_text(double number) {
  if (std::fabs(number) < 1e12 || !std::isfinite(number)) return printed("%.3f", number);
  std::string digits = printed("%.15e", std::fabs(number));
  const std::size_t exponent = digits.find('e');
  const auto whole = static_cast<std::size_t>(std::atoi(digits.c_str() + exponent + 1)) + 1;
  digits.erase(exponent).erase(1, 1);
  digits.resize(std::max(digits.size(), whole) + 3, '0');
  return (number < 0 ? "-" : "") + digits.substr(0, whole) + "." + digits.substr(whole, 3);
}

std::string real_text(double number) {
  std::string text = printed("%.15g", number);
  return text.find_first_not_of("-0123456789") == std::string::npos ? text + ".0" : text;
}

std::string decimal_text(Decimal number) {
  std::string fraction = std::to_string(Decimal::scale + std::llabs(number.raw % Decimal::scale)).substr(1);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  const std::string whole = std::to_string(std::llabs(number.raw / Decimal::scale));
  return (number.raw < 0 ? "-" : "") + whole + "." + (fraction.empty() ? "0" : fraction);
}

// Doubles beyond the whole numbers become the nearest one.
std::int64_t truncated(double number) {
  if (number >= 9223372036854775807.0) return INT64_MAX;
  return number > -9223372036854775808.0 ? static_cast<std::int64_t>(number) : INT64_MIN;
}

double real_of(Decimal number) { return static_cast<double>(number.raw) / static_cast<double>(Decimal::scale); }

struct writer {
  char type;

  template <class T>
  std::string operator()(const T& of) const {
    if constexpr (std::is_integral_v<T>) {
      return type == 'R' ? fixed_text(static_cast<double>(of)) : std::to_string(of);
    } else if constexpr (std::is_floating_point_v<T>) {
      if (type == 'I') return std::to_string(truncated(of));
      return type == 'R' ? fixed_text(of) : real_text(of);
    } else if constexpr (std::is_same_v<T, operator_library::NullValue>) {
      return "NULL";
    } else {
      return "?";
    }
  }
  std::string operator()(Decimal of) const {
    if (type == 'I') return std::to_string(of.raw / Decimal::scale);
    return type == 'R' ? fixed_text(real_of(of)) : decimal_text(of);
  }
  std::string operator()(const db_string::tt_string& of) const {
    std::string text = ovhost::utf8(ovhost::decode(of));
    if (type == 'I') return std::to_string(std::atoll(text.c_str()));
    return type == 'R' ? fixed_text(std::atof(text.c_str())) : printable(std::move(text));
  }
};

bool is_plain(const ovsql::value& of) {
  return !std::holds_alternative<OV_OBJ_REF>(of) && !std::holds_alternative<operator_library::Binary>(of) &&
         !std::holds_alternative<operator_library::SetSpecifier>(of);
}

}  // namespace

std::string value_text(const ovsql::value& of, char type) { return std::visit(writer{type}, of); }

std::string value_text(const ovsql::statement& row, std::size_t at, char type) {
  return is_plain(row[at]) ? value_text(row[at], type) : printable(row.words(at));
}

}  // namespace slt
