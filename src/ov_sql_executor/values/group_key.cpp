#include "ov_sql_executor/values/group_key.hpp"

#include <bit>

#include "ov_sql_executor/values/encoded_text.hpp"
#include "ov_sql_executor/values/natural_order.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"

namespace ov::sql_executor {

namespace {

constexpr std::uint64_t null_hash = 0x9E3779B97F4A7C15;  // any number would do

struct fnv1a {
  std::uint64_t hash = 0xCBF29CE484222325;

  void add(std::uint64_t word, int byte_count) {
    for (int byte = 0; byte < byte_count; ++byte) hash = (hash ^ (word >> (8 * byte) & 0xFF)) * 0x100000001B3;
  }
};

std::uint64_t hash_word(std::uint64_t word) {
  fnv1a sum;
  sum.add(word, 8);
  return sum.hash;
}

std::uint64_t hash_of(bool key) { return key ? 1 : 0; }
std::uint64_t hash_of(std::uint64_t key) { return key; }
std::uint64_t hash_of(std::int64_t key) { return static_cast<std::uint64_t>(key); }
std::uint64_t hash_of(operator_library::Decimal key) { return hash_word(static_cast<std::uint64_t>(key.raw)); }
std::uint64_t hash_of(double key) { return key == 0 ? 0 : std::bit_cast<std::uint64_t>(key); }
std::uint64_t hash_of(float key) { return key == 0 ? 0 : std::bit_cast<std::uint32_t>(key); }
std::uint64_t hash_of(const OV_OBJ_REF& key) { return hash_word(key.object_number); }
std::uint64_t hash_of(const operator_library::NullValue&) { return null_hash; }

// Takes the bytes of a text as signed numbers, those of a binary as unsigned ones.
std::uint64_t hash_of(const text_view& key) {
  std::uint64_t hash = 0;
  for (const std::uint8_t byte : bit_count(key).payload) {
    hash = hash_combine(hash, static_cast<std::uint64_t>(std::int64_t{static_cast<std::int8_t>(byte)}));
  }
  return hash;
}

std::uint64_t hash_of(const binary_view& key) {
  std::uint64_t hash = 0;
  for (const std::uint8_t byte : key.bytes) hash = hash_combine(hash, byte);
  return hash;
}

std::uint64_t hash_of(std::u16string_view key) {
  fnv1a sum;
  for (const char16_t unit : key) sum.add(unit, 2);
  return sum.hash;
}

}  // namespace

std::uint64_t hash_combine(std::uint64_t seed, std::uint64_t hash) {
  constexpr std::uint64_t multiplier = 0xC6A4A7935BD1E995;
  hash *= multiplier;
  hash ^= hash >> 47;
  hash *= multiplier;
  return (seed ^ hash) * multiplier + 0xE6546B64;
}

std::uint64_t key_hash(std::uint64_t seed, const value_view& key) {
  return visit_view(
      [seed]<class Key>(const Key& held) -> std::uint64_t {
        if constexpr (std::same_as<Key, std::monostate>) {
          throw std::bad_variant_access();
        } else {
          return hash_combine(seed, hash_of(held));
        }
      },
      key);
}

bool key_equal(const value_view& left, const value_view& right) {
  if (left.index() != right.index()) return false;
  return visit_view(
      [&right]<class Key>(const Key& key) {
        if constexpr (std::same_as<Key, std::monostate>) {
          throw std::bad_variant_access();
          return false;
        } else if constexpr (std::same_as<Key, operator_library::NullValue>) {
          return true;
        } else if constexpr (numeric_alternative<Key>) {
          return key == *std::get_if<Key>(&right);
        } else {
          return natural_order(key, *std::get_if<Key>(&right)) == 0;
        }
      },
      left);
}

}  // namespace ov::sql_executor
