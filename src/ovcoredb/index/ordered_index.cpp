#include "ovcoredb/index/ordered_index.hpp"

#include <cassert>
#include <utility>

namespace ovcoredb {

ordered_index::ordered_index(const object_store& objects, std::uint64_t handle, std::vector<key_part> parts,
                             bool unique)
    : handle_(handle),
      unique_(unique),
      order_(objects, std::move(parts)),
      is_number_(order_.entry_is_key() && order_.parts().front().type != column_type::boolean),
      entries_(order_) {}

void ordered_index::insert(std::uint64_t number) {
  const index_entry entry = order_.entry_of(number);
  if (unique_ && !order_.holds_null(number)) check_unique(entry);
  entries_.insert(entry);
}

void ordered_index::check_unique(const index_entry& entry) const {
  const entry_position at =
      entries_.find(entry.word(), [&](const index_entry& each) { return order_.compare_keys(each, entry) < 0; });
  if (!at.at_end() && order_.compare_keys(*at, entry) == 0) throw unique_violation(handle_, (*at).number());
}

void ordered_index::erase(std::uint64_t number) { entries_.erase(order_.entry_of(number)); }

}  // namespace ovcoredb
