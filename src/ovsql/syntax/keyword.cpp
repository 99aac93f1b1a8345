#include "ovsql/syntax/keyword.hpp"

#include <algorithm>
#include <array>

namespace ovsql::syntax {
namespace {

constexpr std::size_t slot_count = 1024;  // sparse, so that most names meet an empty slot
constexpr std::size_t word_count = std::size(reserved_words) + std::size(plain_words);
static_assert(word_count < 256);

constexpr std::string_view word_of(std::size_t number) {
  return number <= std::size(reserved_words) ? reserved_words[number - 1]
                                             : plain_words[number - 1 - std::size(reserved_words)];
}

constexpr std::size_t slot_of(std::uint32_t hash) { return (hash ^ (hash >> 10U)) % slot_count; }

// The numbers of the words by their hashes; a word whose slot is taken goes into the next free one.
constexpr std::array<std::uint8_t, slot_count> slots = [] {
  std::array<std::uint8_t, slot_count> made{};
  for (std::size_t number = 1; number <= word_count; ++number) {
    std::uint32_t hash = 0;
    for (const char letter : word_of(number)) hash = add_to_hash(hash, letter);
    std::size_t at = slot_of(hash);
    while (made[at] != 0) at = (at + 1) % slot_count;
    made[at] = static_cast<std::uint8_t>(number);
  }
  return made;
}();

bool is_word(std::string_view text, std::string_view word) {
  return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                    [](char any, char lower) { return (static_cast<unsigned char>(any) | 0x20) == lower; });
}

}  // namespace

keyword find_keyword(std::string_view word, std::uint32_t hash) {
  for (std::size_t at = slot_of(hash); slots[at] != 0; at = (at + 1) % slot_count) {
    if (is_word(word, word_of(slots[at]))) return slots[at];
  }
  return no_keyword;
}

}  // namespace ovsql::syntax
