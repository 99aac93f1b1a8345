#include "ov_sql_executor/execution/grouping/distinct_rows.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>
#include <variant>

namespace ov::sql_executor {

namespace {

constexpr std::size_t smallest_size = 16;

constexpr std::uint8_t no_tag = 0;

// Uses the low bits, since the top ones decide the position.
std::uint8_t tag_of(std::uint32_t hash) { return static_cast<std::uint8_t>(hash | 0x80); }

// A NaN equals nothing. A row with one is appended without a slot: it is distinct from every row, and no key finds it.
bool has_nan(std::span<const value_view> key) {
  return std::any_of(key.begin(), key.end(), [](const value_view& each) {
    const auto* wide = std::get_if<double>(&each);
    const auto* narrow = std::get_if<float>(&each);
    return (wide != nullptr && std::isnan(*wide)) || (narrow != nullptr && std::isnan(*narrow));
  });
}

}  // namespace

void distinct_rows::prefetch_slot(std::uint32_t hash) const {
  if (tags_.empty()) return;
  prefetch_memory(&tags_[first_position(hash)]);
  prefetch_memory(&slots_[first_position(hash)]);
}

std::optional<std::size_t> distinct_rows::prefetch_row(std::uint32_t hash) const {
  if (tags_.empty()) return std::nullopt;
  for (std::size_t at = first_position(hash); tags_[at] != no_tag; at = next_position(at)) {
    if (tags_[at] != tag_of(hash) || slots_[at].hash != hash) continue;
    const std::size_t index = slots_[at].index;
    keys_.prefetch(index * width_);
    return index;
  }
  return std::nullopt;
}

void distinct_rows::prefetch_texts(std::size_t index) const {
  assert(index < size_);
  for (std::size_t column = 0; column < width_; ++column) keys_.prefetch_text(index * width_ + column);
}

distinct_rows::place distinct_rows::find_or_insert(std::span<const value_view> key, std::uint32_t hash) {
  assert(hash == hash_of(key));
  if (has_nan(key)) return {append(key), true};
  if (tags_.size() <= 2 * size_) grow();
  std::size_t at = first_position(hash);
  for (; tags_[at] != no_tag; at = next_position(at)) {
    if (tags_[at] != tag_of(hash) || slots_[at].hash != hash) continue;
    const std::size_t index = slots_[at].index;
    if (equals(index, key)) return {index, false};
  }
  const std::size_t index = append(key);
  set_slot(at, {hash, static_cast<std::uint32_t>(index)});
  return {index, true};
}

std::optional<std::size_t> distinct_rows::find(std::span<const value_view> key) const {
  if (tags_.empty()) return std::nullopt;
  const std::uint32_t hash = hash_of(key);
  for (std::size_t at = first_position(hash); tags_[at] != no_tag; at = next_position(at)) {
    if (tags_[at] == tag_of(hash) && slots_[at].hash == hash && equals(slots_[at].index, key)) return slots_[at].index;
  }
  return std::nullopt;
}

bool distinct_rows::equals(std::size_t index, std::span<const value_view> key) const {
  for (std::size_t column = 0; column < width_; ++column) {
    if (!keys_.equals(index * width_ + column, key[column])) return false;
  }
  return true;
}

std::size_t distinct_rows::append(std::span<const value_view> key) {
  if (size_ == std::numeric_limits<std::uint32_t>::max()) throw std::length_error("unordered_map/set too long");
  for (const value_view& each : key) keys_.push_back(each);
  return size_++;
}

void distinct_rows::grow() {
  const std::size_t size = std::max(smallest_size, 2 * tags_.size());
  large_vector<slot> slots(size);
  const large_vector<std::uint8_t> old_tags = std::exchange(tags_, large_vector<std::uint8_t>(size, no_tag));
  slots_.swap(slots);
  shift_ = 32 - std::min(32U, static_cast<unsigned>(std::bit_width(size - 1)));
  for (std::size_t position = 0; position < old_tags.size(); ++position) {
    if (old_tags[position] != no_tag) set_slot(free_position(slots[position].hash), slots[position]);
  }
}

std::size_t distinct_rows::free_position(std::uint32_t hash) const {
  std::size_t position = first_position(hash);
  while (tags_[position] != no_tag) position = next_position(position);
  return position;
}

void distinct_rows::set_slot(std::size_t position, slot entered) {
  tags_[position] = tag_of(entered.hash);
  slots_[position] = entered;
}

}  // namespace ov::sql_executor
