#include "ovcoredb/index/entry_order.hpp"

#include <algorithm>
#include <cassert>
#include <utility>

namespace ovcoredb {

entry_order::entry_order(const object_store& objects, std::vector<key_part> parts)
    : objects_(objects),
      parts_(std::move(parts)),
      first_rest_(parts_.front().holds_bytes() ? 0 : 1),
      entry_is_key_(first_rest_ == parts_.size()) {}

index_entry entry_order::entry_of(std::uint64_t number) const {
  const object_place place = objects_.find_object(number);
  assert(place.in != nullptr);
  const key_component first = read_component(parts_.front(), number, place);
  return {leading_order_of(first, parts_.front().ascending), number};
}

bool entry_order::holds_null(std::uint64_t number) const {
  const object_place place = objects_.find_object(number);
  assert(place.in != nullptr);
  return std::any_of(parts_.begin(), parts_.end(), [&](const key_part& part) {
    return read_component(part, number, place).kind == component_kind::null;
  });
}

int entry_order::compare_rest(std::uint64_t a, std::uint64_t b) const {
  const object_place place_a = objects_.find_object(a);
  const object_place place_b = objects_.find_object(b);
  for (std::size_t i = first_rest_; i < parts_.size(); ++i) {
    const int order = compare(read_component(parts_[i], a, place_a), read_component(parts_[i], b, place_b));
    if (order != 0) return parts_[i].ascending ? order : -order;
  }
  return 0;
}

bool entry_order::rest_before(const index_entry& entry, const range_end& end) const {
  const bool end_is_high = end.tail >> 31 != 0;
  if (!end.components.empty() && entry.high() != end_is_high) return !entry.high();
  const object_place place = objects_.find_object(entry.number());
  for (std::size_t i = first_rest_; i < end.components.size(); ++i) {
    const int order = compare(read_component(parts_[i], entry.number(), place), end.components[i]);
    if (order != 0) return parts_[i].ascending == (order < 0);
  }
  return end.after_equal;
}

}  // namespace ovcoredb
