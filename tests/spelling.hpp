// Values as words, both ways, so that a case of a table is a line or less: i5, u5, dec2500000 (raw), d2.5, f2.5, true,
// NULL, ref7, 'text', set'/specifier/', x'0aff' (a binary), bytes'80fe' (a text that the core would not encode so).
#ifndef TESTS_SPELLING_HPP_
#define TESTS_SPELLING_HPP_

#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/value_view.hpp"
#include "ovcoredb/ovcoredb.h"

namespace tests {

using namespace ov::sql_executor;
using operator_library::Binary, operator_library::Decimal, operator_library::NullValue, operator_library::SetSpecifier;
using rows = std::vector<row>;
using byte_list = std::vector<std::uint8_t>;

// A value converts from anything; these say which alternative is meant.
inline value null() { return NullValue{}; }
inline value i(std::int64_t number) { return number; }
inline value u(std::uint64_t number) { return number; }
inline value text(const std::u16string& units) {
  byte_list bytes(orv_convert_ucs2_to_turbotext(units.c_str(), 0, nullptr, 0));
  orv_convert_ucs2_to_turbotext(units.c_str(), 0, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  return db_string::tt_string(bytes.data(), bytes.size());
}

inline std::vector<std::string> split(std::string_view words, char separator = ' ') {
  std::vector<std::string> list;
  std::istringstream in{std::string(words)};
  for (std::string word; std::getline(in, word, separator);) {
    if (!word.empty()) list.push_back(word);
  }
  return list;
}

template <class Number>
std::string digits(Number number) {
  if constexpr (std::floating_point<Number>) {
    if (std::isnan(number)) return std::signbit(number) ? "-nan" : "nan";
  }
  char buffer[64];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

inline std::string spell_bytes(const char* kind, const std::uint8_t* bytes, std::size_t size) {
  std::string word = kind + std::string("'");
  for (std::size_t n = 0; n < size; ++n) {
    word += "0123456789abcdef"[bytes[n] >> 4];
    word += "0123456789abcdef"[bytes[n] & 15];
  }
  return word + "'";
}

// Spells units that are no visible ASCII characters in hexadecimal.
inline std::string spell_units(const char* kind, const std::u16string& units) {
  std::string word = kind + std::string("'");
  for (const char16_t unit : units) {
    char buffer[8] = {static_cast<char>(unit)};
    if (unit <= u' ' || unit > u'~') std::snprintf(buffer, sizeof buffer, "<%x>", static_cast<unsigned>(unit));
    word += buffer;
  }
  return word + "'";
}

inline std::string spell_text(const db_string::tt_string& held) {
  const auto size = static_cast<std::uint32_t>(held.size());
  std::u16string units(static_cast<std::size_t>(-orv_convert_turbotext_to_ucs2(held.data(), size, nullptr, 0)), u'\0');
  orv_convert_turbotext_to_ucs2(held.data(), size, units.data(), static_cast<std::uint32_t>(units.size() + 1));
  const value again = text(units);
  const auto& encoded = std::get<db_string::tt_string>(again);
  const bool is_plain = std::equal(held.data(), held.data() + size, encoded.data(), encoded.data() + encoded.size());
  return is_plain ? spell_units("", units) : spell_bytes("bytes", held.data(), size);
}

inline std::string spell(std::string words) { return words; }

inline std::string spell(const value& any) {
  return std::visit(
      []<class T>(const T& held) -> std::string {
        if constexpr (std::same_as<T, NullValue>) {
          return "NULL";
        } else if constexpr (std::same_as<T, bool>) {
          return held ? "true" : "false";
        } else if constexpr (std::same_as<T, Decimal>) {
          return "dec" + digits(held.raw);
        } else if constexpr (std::same_as<T, OV_OBJ_REF>) {
          return "ref" + digits(held.object_number);
        } else if constexpr (std::same_as<T, db_string::tt_string>) {
          return spell_text(held);
        } else if constexpr (std::same_as<T, Binary>) {
          return spell_bytes("x", held.bytes.data(), held.bytes.size());
        } else if constexpr (std::same_as<T, SetSpecifier>) {
          return spell_units("set", held.units);
        } else {
          constexpr char kind = std::same_as<T, std::int64_t>    ? 'i'
                                : std::same_as<T, std::uint64_t> ? 'u'
                                : std::same_as<T, double>        ? 'd'
                                                                 : 'f';
          return kind + digits(held);
        }
      },
      any);
}

inline std::string spell(const value_view& view) { return spell(to_value(view)); }

// Spells "i1 NULL", and "(i1 NULL)(i2 i3)".
inline std::string spell(const row& values) {
  std::string words;
  for (const value& each : values) words += (words.empty() ? "" : " ") + spell(each);
  return words;
}
inline std::string spell(const rows& all) {
  std::string words;
  for (const row& each : all) words += "(" + spell(each) + ")";
  return words;
}

template <class Number>
Number number_in(std::string_view word) {
  Number number{};
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) throw std::invalid_argument(std::string(word));
  return number;
}

// Returns what spell would write so.
inline value val(std::string_view word) {
  const auto after = [word](std::string_view kind) { return word.substr(kind.size()); };
  const auto is = [word](std::string_view kind) { return word.starts_with(kind); };
  if (word == "NULL") return null();
  if (word == "true" || word == "false") return word == "true";
  if (word.ends_with('\'')) {
    const std::size_t quote = word.find('\'');
    const std::string_view inside = word.substr(quote + 1, word.size() - quote - 2);
    const std::u16string units(inside.begin(), inside.end());
    if (quote == 0) return text(units);
    if (is("set")) return SetSpecifier{units};
    byte_list bytes;
    for (std::size_t n = 0; n < inside.size(); n += 2) {
      bytes.push_back(static_cast<std::uint8_t>(std::stoul(std::string(inside.substr(n, 2)), nullptr, 16)));
    }
    if (is("x")) return Binary{bytes};
    return db_string::tt_string(bytes.data(), bytes.size());
  }
  if (is("dec")) return Decimal{number_in<std::int64_t>(after("dec"))};
  if (is("ref")) return OV_OBJ_REF{number_in<std::uint64_t>(after("ref")), 0};
  if (is("i")) return number_in<std::int64_t>(after("i"));
  if (is("u")) return number_in<std::uint64_t>(after("u"));
  if (is("d")) return number_in<double>(after("d"));
  return number_in<float>(after("f"));
}

inline row vals(std::string_view words) {
  row values;
  for (const std::string& word : split(words)) values.push_back(val(word));
  return values;
}

// Reads "(i1 NULL)(i2 i3)".
inline rows table(std::string_view words) {
  rows all;
  for (const std::string& each : split(words, '(')) all.push_back(vals(each.substr(0, each.find(')'))));
  return all;
}

}  // namespace tests

#endif  // TESTS_SPELLING_HPP_
