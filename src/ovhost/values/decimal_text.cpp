#include "ovhost/values/decimal_text.hpp"

#include <cstddef>
#include <cstdint>

#include "ovhost/values/number_text.hpp"

namespace ovhost {
namespace {

constexpr std::size_t fraction_digits = 6;

bool all_digits(std::string_view text) { return text.find_first_not_of("0123456789") == std::string_view::npos; }

}  // namespace

std::optional<operator_library::Decimal> parse_decimal(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  std::string fraction(point == std::string_view::npos ? "" : text.substr(point + 1));
  if (point != std::string_view::npos && fraction.empty()) return std::nullopt;
  if (!all_digits(fraction) || fraction.size() > fraction_digits || !all_digits(whole)) return std::nullopt;
  fraction.resize(fraction_digits, '0');
  const auto integral = parse_number<std::int64_t>(whole);
  if (!integral || *integral > operator_library::Decimal::max_integral) return std::nullopt;
  const std::int64_t raw = *integral * operator_library::Decimal::scale + *parse_number<std::int64_t>(fraction);
  return operator_library::Decimal{negative ? -raw : raw};
}

std::string to_text(operator_library::Decimal number) {
  const auto magnitude =
      number.raw < 0 ? 0 - static_cast<std::uint64_t>(number.raw) : static_cast<std::uint64_t>(number.raw);
  constexpr std::uint64_t scale = operator_library::Decimal::scale;
  std::string text = (number.raw < 0 ? "-" : "") + std::to_string(magnitude / scale);
  std::string fraction = std::to_string(scale + magnitude % scale).substr(1);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  return fraction.empty() ? text : text + "." + fraction;
}

}  // namespace ovhost
