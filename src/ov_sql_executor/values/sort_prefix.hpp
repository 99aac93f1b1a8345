// The first 64 bits of a value, or later ones of a text, as numbers that sort as the values do, as far as they differ.
#ifndef OV_SQL_EXECUTOR_VALUES_SORT_PREFIX_HPP_
#define OV_SQL_EXECUTOR_VALUES_SORT_PREFIX_HPP_

#include <algorithm>
#include <bit>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>

#include "ov_sql_executor/values/encoded_text.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Types whose values are equal when their prefixes are.
template <class T>
concept fits_sort_prefix = numeric_alternative<T> || std::same_as<T, OV_OBJ_REF>;

inline std::uint64_t sort_prefix(bool key) { return key ? 1 : 0; }
inline std::uint64_t sort_prefix(std::uint64_t key) { return key; }
inline std::uint64_t sort_prefix(const OV_OBJ_REF& key) { return key.object_number; }

inline constexpr std::uint64_t sign_bit = std::uint64_t{1} << 63;

inline std::uint64_t sort_prefix(std::int64_t key) { return static_cast<std::uint64_t>(key) ^ sign_bit; }
inline std::uint64_t sort_prefix(operator_library::Decimal key) { return sort_prefix(key.raw); }

// Positive numbers sort by their bits, negative ones the other way round. Both zeros have one prefix. Requires: key is
// no NaN.
inline std::uint64_t sort_prefix(double key) {
  assert(!std::isnan(key));
  const auto bits = std::bit_cast<std::uint64_t>(key == 0 ? 0.0 : key);
  return (bits & sign_bit) != 0 ? ~bits : bits | sign_bit;
}
inline std::uint64_t sort_prefix(float key) { return sort_prefix(static_cast<double>(key)); }

// Returns the key that has this prefix. Loses the sign of a zero and a reference's second word.
template <fits_sort_prefix Key>
Key from_sort_prefix(std::uint64_t prefix) {
  if constexpr (std::same_as<Key, OV_OBJ_REF>) {
    return {prefix, 0};
  } else if constexpr (std::same_as<Key, operator_library::Decimal>) {
    return {from_sort_prefix<std::int64_t>(prefix)};
  } else if constexpr (std::same_as<Key, std::int64_t>) {
    return static_cast<std::int64_t>(prefix ^ sign_bit);
  } else if constexpr (floating_alternative<Key>) {
    return static_cast<Key>(std::bit_cast<double>((prefix & sign_bit) != 0 ? prefix ^ sign_bit : ~prefix));
  } else {
    return static_cast<Key>(prefix);
  }
}

// Return what texts, binaries and set specifiers are compared by.
inline std::span<const std::uint8_t> sorted_units(const text_view& key) { return bit_count(key).payload; }
inline std::span<const std::uint8_t> sorted_units(const binary_view& key) { return key.bytes; }
inline std::span<const char16_t> sorted_units(std::u16string_view key) { return key; }

template <class T>
concept sorted_by_units = requires(const T& key) {
  sorted_units(key);
};

template <class Unit>
inline constexpr std::size_t units_of_word = sizeof(std::uint64_t) / sizeof(Unit);

// Tells whether a sequence ends with this word or earlier. Word 0 is the first 64 bits.
template <class Unit>
bool ends_with_word(std::span<const Unit> units, std::size_t word) {
  return units.size() <= (word + 1) * units_of_word<Unit>;
}

// Puts zeros in place of missing units: a sequence is not above what it begins.
template <class Unit>
std::uint64_t sort_word(std::span<const Unit> units, std::size_t word) {
  const std::size_t start = word * units_of_word<Unit>;
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < units_of_word<Unit>; ++i) {
    const std::uint64_t unit = start + i < units.size() ? units[start + i] : 0;
    bits = bits << (8 * sizeof(Unit)) | unit;
  }
  return bits;
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_SORT_PREFIX_HPP_
