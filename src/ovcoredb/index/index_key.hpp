// Reads the keys that name the ends of an index range. Their format is drawn at orv_context_create_iterator
// (ovcoredb.h).
#ifndef OVCOREDB_INDEX_INDEX_KEY_HPP_
#define OVCOREDB_INDEX_INDEX_KEY_HPP_

#include <cstdint>
#include <cstring>
#include <span>

#include "ovcoredb/index/key_part.hpp"
#include "ovcoredb/index/range_end.hpp"

namespace ovcoredb {

inline constexpr std::uint8_t number_mark = 0x28;
inline constexpr std::uint8_t key_end_mark = 0xC0;

inline std::uint64_t read_word(const std::uint8_t* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return __builtin_bswap64(word);
}

// Reads the commonest key, one number, for an index whose entries hold all of it. True if `key` is one: then replaces
// the end except for its components, which the index does not look at then.
inline bool read_number_key(const std::uint8_t* key, bool ascending, bool after_equal, range_end& end) {
  if (key[0] != number_mark || key[1 + sizeof(std::uint64_t)] != key_end_mark) return false;
  end.set_first(number_component(read_word(key + 1)), ascending, after_equal);
  return true;
}

// Replaces the end by that of `key`. False when the key is not well formed or does not fit the parts. Reads nothing
// after the key's terminator or its first malformed byte.
bool read_key(const std::uint8_t* key, std::span<const key_part> parts, bool after_equal, range_end& end);

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_INDEX_KEY_HPP_
