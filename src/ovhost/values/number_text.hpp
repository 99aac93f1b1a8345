#ifndef OVHOST_VALUES_NUMBER_TEXT_HPP_
#define OVHOST_VALUES_NUMBER_TEXT_HPP_

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace ovhost {

// Reads the whole text as a number. Gives nothing for any other text and for a number that T cannot hold.
template <class T>
std::optional<T> parse_number(std::string_view text) {
  T number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// Writes the shortest text that reads back as the same number. Every NaN is "nan", whatever its sign.
template <class T>
std::string number_text(T number) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(number)) return "nan";
  }
  std::array<char, 64> buffer{};
  return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr};
}

}  // namespace ovhost

#endif  // OVHOST_VALUES_NUMBER_TEXT_HPP_
