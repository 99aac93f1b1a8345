#include "ov_sql_executor/values/equality_set.hpp"

#include <bit>

namespace ov::sql_executor {

equality_set::equality_set(std::span<const value_view> members) : slots_(std::bit_ceil(4 * members.size() + 1)) {
  for (const value_view& each : members) insert(equality_key(each));
}

void equality_set::insert(const value_view& key) {
  if (!are_equal(key, key)) return;
  const std::uint32_t hash = hash_of(key);
  slot& found = slots_[find(key, hash)];
  if (found.number != nobody) return;
  append_value(keys_, key);
  found = {hash, static_cast<std::uint32_t>(keys_.size())};
}

}  // namespace ov::sql_executor
