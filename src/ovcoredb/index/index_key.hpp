// The keys that name the ends of an index range, read from the bytes of the C interface (drawn at
// orv_context_create_iterator).
#ifndef OVCOREDB_INDEX_INDEX_KEY_HPP_
#define OVCOREDB_INDEX_INDEX_KEY_HPP_

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "ovcoredb/database.hpp"
#include "ovcoredb/index/key_component.hpp"
#include "ovcoredb/storage/object_store.hpp"

namespace ovcoredb {

enum class part_source : std::uint8_t { number, set_specifier, column };

// One column of an index's key.
struct key_part {
  part_source source = part_source::number;
  column_type type = column_type::uint64;  // a set specifier counts as text
  bool ascending = true;
  std::uint32_t place = 0;  // in table::columns, if the source is a column

  bool holds_bytes() const { return type == column_type::text || type == column_type::binary; }
};

key_component read_component(const key_part& part, std::uint64_t number, const object_place& place);

// How index entries begin: the first component's word and whether it is not NULL, both turned round if that column
// descends. Entries are ordered by these two before anything else.
struct leading_order {
  std::uint64_t word = 0;
  bool high = false;
};

inline leading_order leading_order_of(const key_component& first, bool ascending) {
  const bool present = first.kind != component_kind::null;
  return ascending ? leading_order{first.word, present} : leading_order{~first.word, !present};
}

// Of an entry's object number. The highest is above that of every object.
inline constexpr std::uint32_t index_number_mask = 0x7FFFFFFF;

// An end of a range, lying before or behind the entries whose keys begin with its components.
struct range_end {
  std::vector<key_component> components;  // at most as many as the key has columns
  std::vector<std::uint8_t> bytes;        // what the components' spans refer to
  bool behind_equal = false;

  // The end as an entry would lie there (see index_entry), as far as its first component tells.
  std::uint64_t word = 0;
  std::uint32_t tagged = 0;

  void place(const key_component& first, bool ascending, bool behind) {
    const leading_order leading = leading_order_of(first, ascending);
    behind_equal = behind;
    word = leading.word;
    tagged = std::uint32_t{leading.high} << 31 | (behind ? index_number_mask : 0);
  }
};

inline constexpr std::uint8_t number_mark = 0x28;
inline constexpr std::uint8_t key_end_mark = 0xC0;

inline std::uint64_t read_word(const std::uint8_t* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return __builtin_bswap64(word);
}

// The commonest key, one number, for an index whose entries hold all of it: true if `key` is one, and then the end is
// replaced but for its components, which are not looked at.
inline bool read_number_key(const std::uint8_t* key, bool ascending, bool behind_equal, range_end& end) {
  if (key[0] != number_mark || key[1 + sizeof(std::uint64_t)] != key_end_mark) return false;
  end.place(number_component(read_word(key + 1)), ascending, behind_equal);
  return true;
}

// Replaces the end by that of `key`. False when the key is not well formed or does not fit the parts.
// Reads nothing behind the key's terminator or its first malformed byte.
bool read_key(const std::uint8_t* key, std::span<const key_part> parts, bool behind_equal, range_end& end);

}  // namespace ovcoredb

#endif  // OVCOREDB_INDEX_INDEX_KEY_HPP_
