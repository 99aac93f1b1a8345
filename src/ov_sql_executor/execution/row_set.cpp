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

constexpr std::size_t most_without_index = 8;

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
  if (slots_.empty()) {
    for (std::size_t index = 0; index < size_; ++index) {
      if (equals(index, key)) return {index, false};
    }
    if (size_ < most_without_index) return {append(key), true};
    index_rows();
  }
  const auto hash = static_cast<std::uint32_t>(hash_(key));
  if (has_nan(key)) return {append(key), true};
  if (slots_.size() <= 2 * size_) grow();
  std::size_t at = std::size_t{hash} >> shift_;
  for (; slots_[at].entry != 0; at = (at + 1) & (slots_.size() - 1)) {
    const std::size_t index = slots_[at].entry - 1;
    if (slots_[at].hash == hash && equals(index, key)) return {index, false};
  }
  const std::size_t index = append(key);
  slots_[at] = {hash, static_cast<std::uint32_t>(index + 1)};
  return {index, true};
}

// Integers, the commonest keys, are compared without asking for the alternative twice.
bool row_set::equals(std::size_t index, std::span<const value_view> key) const {
  const std::span<const value_view> kept = row_at(index);
  return std::equal(kept.begin(), kept.end(), key.begin(), [](const value_view& held, const value_view& view) {
    const auto* left = std::get_if<std::int64_t>(&held);
    const auto* right = std::get_if<std::int64_t>(&view);
    return left != nullptr && right != nullptr ? *left == *right : key_equal(held, view);
  });
}

std::size_t row_set::append(std::span<const value_view> key) {
  if (size_ == std::numeric_limits<std::uint32_t>::max()) throw std::length_error("unordered_map/set too long");
  if (keys_.empty()) keys_.reserve(2 * width_);
  for (const value_view& each : key) keeper_.append_to(keys_, each);
  return size_++;
}

void row_set::index_rows() {
  grow();
  for (std::uint32_t index = 0; index < size_; ++index) {
    if (!has_nan(row_at(index))) enter({static_cast<std::uint32_t>(hash_(row_at(index))), index + 1});
  }
}

void row_set::grow() {
  constexpr std::size_t smallest = 4 * most_without_index;
  const large_vector<slot> old = std::exchange(slots_, large_vector<slot>(std::max(smallest, 2 * slots_.size())));
  shift_ = 32 - std::min(32U, static_cast<unsigned>(std::bit_width(slots_.size() - 1)));
  for (const slot& each : old) {
    if (each.entry != 0) enter(each);
  }
}

// In the first place that is free. The row is in none.
void row_set::enter(slot entered) {
  std::size_t at = std::size_t{entered.hash} >> shift_;
  while (slots_[at].entry != 0) at = (at + 1) & (slots_.size() - 1);
  slots_[at] = entered;
}

}  // namespace ov::sql_executor
