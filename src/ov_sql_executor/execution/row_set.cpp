#include "ov_sql_executor/execution/row_set.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>
#include <variant>

#include "ov_sql_executor/values/group_key.hpp"

namespace ov::sql_executor {

namespace {

std::uint64_t hash_row(std::span<const value_view> key) {
  std::uint64_t hash = 0;
  for (const value_view& each : key) {
    // The index of a view is that of the value's alternative plus one.
    hash = hash_combine(hash, key_hash(hash_combine(0, each.index() - 1), each));
  }
  return hash;
}

// A NaN equals nothing, so a row with one is distinct from every other and is never looked for.
bool has_nan(std::span<const value_view> key) {
  return std::any_of(key.begin(), key.end(), [](const value_view& each) {
    const auto* wide = std::get_if<double>(&each);
    const auto* narrow = std::get_if<float>(&each);
    return (wide != nullptr && std::isnan(*wide)) || (narrow != nullptr && std::isnan(*narrow));
  });
}

}  // namespace

row_set::place row_set::find_or_insert(std::span<const value_view> key) {
  const std::uint64_t hash = hash_row(key);
  if (has_nan(key)) return {append(key, hash), true};
  if (slots_.size() <= 2 * size()) grow();
  std::size_t slot = first_slot(hash);
  for (; slots_[slot] != 0; slot = (slot + 1) & (slots_.size() - 1)) {
    const std::size_t index = slots_[slot] - 1;
    if (hashes_[index] == hash && equals(index, key)) return {index, false};
  }
  const std::size_t index = append(key, hash);
  slots_[slot] = static_cast<std::uint32_t>(index + 1);
  return {index, true};
}

bool row_set::equals(std::size_t index, std::span<const value_view> key) const {
  const std::span<const value> kept = row_at(index);
  return std::equal(kept.begin(), kept.end(), key.begin(),
                    [](const value& held, const value_view& view) { return key_equal(view_of(held), view); });
}

// The multiplication brings the bits that differ to the top.
std::size_t row_set::first_slot(std::uint64_t hash) const { return (hash * 0x9E3779B97F4A7C15) >> shift_; }

std::size_t row_set::append(std::span<const value_view> key, std::uint64_t hash) {
  if (size() == std::numeric_limits<std::uint32_t>::max()) throw std::length_error("unordered_map/set too long");
  for (const value_view& each : key) append_value(values_, each);
  hashes_.push_back(hash);
  return size() - 1;
}

void row_set::grow() {
  constexpr std::size_t smallest = 16;
  const std::vector<std::uint32_t> old =
      std::exchange(slots_, std::vector<std::uint32_t>(std::max(smallest, 2 * slots_.size())));
  shift_ = 64 - static_cast<unsigned>(std::bit_width(slots_.size() - 1));
  for (const std::uint32_t entry : old) {
    if (entry == 0) continue;
    std::size_t slot = first_slot(hashes_[entry - 1]);
    while (slots_[slot] != 0) slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = entry;
  }
}

}  // namespace ov::sql_executor
