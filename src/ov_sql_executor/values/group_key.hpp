// The equality by which grouping matches values, and a hash with fixed results that agrees with it. Tables of groups
// hash with random factors instead (keyed_hash.hpp), since collisions of this hash can be prepared.
#ifndef OV_SQL_EXECUTOR_VALUES_GROUP_KEY_HPP_
#define OV_SQL_EXECUTOR_VALUES_GROUP_KEY_HPP_

#include <cstdint>

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Tells whether two values are the same key. Values of different alternatives are different keys. NULL equals NULL, a
// NaN equals nothing, +0.0 equals -0.0, references are compared by object number. Throws std::bad_variant_access for
// the view of a valueless value.
bool key_equal(const value_view& left, const value_view& right);

// Combines the hash of a value into a seed. Equal keys hash alike. Numbers hash as themselves, texts and binaries byte
// by byte; Decimals, references and set specifiers by FNV-1a over their bytes.
std::uint64_t key_hash(std::uint64_t seed, const value_view& key);

// Combines as boost::hash_combine does for 64-bit seeds (the mixing of MurmurHash64A).
std::uint64_t hash_combine(std::uint64_t seed, std::uint64_t hash);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_GROUP_KEY_HPP_
