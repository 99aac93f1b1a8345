#include "ovcoredb/index/ordered_index.hpp"

#include <algorithm>

namespace ovcoredb {

ordered_index::ordered_index(const object_store& objects, std::uint64_t handle, std::vector<key_part> parts,
                             bool unique)
    : objects_(objects),
      handle_(handle),
      parts_(std::move(parts)),
      unique_(unique),
      first_rest_(parts_.front().holds_bytes() ? 0 : 1),
      leading_is_key_(first_rest_ == parts_.size()),
      is_number_(leading_is_key_ && parts_.front().type != column_type::boolean),
      entries_(entry_order{this}) {}

void ordered_index::insert(std::uint64_t number) {
  const index_entry entry = entry_of(number);
  if (unique_ && !holds_null(number)) {
    const auto at = entries_.find(entry.word(), [&](const index_entry& each) { return compare_keys(each, entry) < 0; });
    if (!at.at_end() && compare_keys(*at, entry) == 0) throw unique_violation(handle_, (*at).number());
  }
  entries_.insert(entry);
}

void ordered_index::erase(std::uint64_t number) { entries_.erase(entry_of(number)); }

index_entry ordered_index::entry_of(std::uint64_t number) const {
  const object_place place = objects_.find_object(number);
  const key_component first = read_component(parts_.front(), number, place);
  return {leading_order_of(first, parts_.front().ascending), number};
}

bool ordered_index::holds_null(std::uint64_t number) const {
  const object_place place = objects_.find_object(number);
  return std::any_of(parts_.begin(), parts_.end(), [&](const key_part& part) {
    return read_component(part, number, place).kind == component_kind::null;
  });
}

int ordered_index::compare_rest(std::uint64_t a, std::uint64_t b) const {
  const object_place place_a = objects_.find_object(a);
  const object_place place_b = objects_.find_object(b);
  for (std::size_t i = first_rest_; i < parts_.size(); ++i) {
    const int order = compare(read_component(parts_[i], a, place_a), read_component(parts_[i], b, place_b));
    if (order != 0) return parts_[i].ascending ? order : -order;
  }
  return 0;
}

bool ordered_index::rest_before(const index_entry& entry, const range_end& end) const {
  if (!end.components.empty() && entry.high() != (end.tagged >> 31 != 0)) return !entry.high();
  const object_place place = objects_.find_object(entry.number());
  for (std::size_t i = first_rest_; i < end.components.size(); ++i) {
    const int order = compare(read_component(parts_[i], entry.number(), place), end.components[i]);
    if (order != 0) return parts_[i].ascending == (order < 0);
  }
  return end.behind_equal;
}

}  // namespace ovcoredb
