// The value of one part of an index key, in the form that is compared.
#ifndef OVCOREDB_INDEX_KEY_COMPONENT_HPP_
#define OVCOREDB_INDEX_KEY_COMPONENT_HPP_

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

namespace ovcoredb {

// In ascending order. Only keys that name the end of a range hold highest.
enum class component_kind : std::uint8_t { null, value, highest };

struct key_component {
  component_kind kind = component_kind::null;
  // Ordered as the values are: a number as keys carry it (ovcoredb.h), or the first eight bytes of a text or binary,
  // the first one uppermost, filled up with zeros. 0 for null, all ones for highest.
  std::uint64_t word = 0;
  std::span<const std::uint8_t> bytes{};  // of a text or binary, all of them
};

inline std::uint64_t leading_word(std::span<const std::uint8_t> bytes) {
  std::uint64_t word = 0;
  if (bytes.empty()) return word;
  std::memcpy(&word, bytes.data(), std::min(bytes.size(), sizeof word));
  return __builtin_bswap64(word);
}

inline key_component number_component(std::uint64_t word) { return {component_kind::value, word, {}}; }
inline key_component bytes_component(std::span<const std::uint8_t> bytes) {
  return {component_kind::value, leading_word(bytes), bytes};
}
inline key_component highest_component() { return {component_kind::highest, ~std::uint64_t{0}, {}}; }

// Negative, 0 or positive: a lies below, equal to or above b.
inline int compare(const key_component& a, const key_component& b) {
  if (a.word != b.word) return a.word < b.word ? -1 : 1;
  if (a.kind != b.kind) return a.kind < b.kind ? -1 : 1;
  const std::size_t common = std::min(a.bytes.size(), b.bytes.size());
  const int order = common == 0 ? 0 : std::memcmp(a.bytes.data(), b.bytes.data(), common);
  if (order != 0 || a.bytes.size() == b.bytes.size()) return order;
  return a.bytes.size() < b.bytes.size() ? -1 : 1;
}

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_KEY_COMPONENT_HPP_
