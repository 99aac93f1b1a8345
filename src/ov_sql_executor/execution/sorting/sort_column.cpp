#include "ov_sql_executor/execution/sorting/sort_column.hpp"

#include <algorithm>
#include <boost/mp11/algorithm.hpp>
#include <cassert>
#include <concepts>
#include <type_traits>
#include <utility>

namespace ov::sql_executor {

namespace {

using operator_library::NullValue;

constexpr sort_kinds null_kind = kind_of_alternative<NullValue>;

template <class Key>
using fits = boost::mp11::mp_bool<fits_sort_prefix<Key>>;
using fitting_keys = boost::mp11::mp_copy_if<boost::mp11::mp_rename<value_view, boost::mp11::mp_list>, fits>;

constexpr sort_kinds fitting_kinds = []<class... Key>(boost::mp11::mp_list<Key...>) {
  return (null_kind | ... | kind_of_alternative<Key>);
}(fitting_keys());

bool have_exact_prefixes(sort_kinds kinds) { return (kinds & ~fitting_kinds) == 0 && is_sortable(kinds); }

// Returns 0 for keys that cannot be sorted by prefixes.
std::uint64_t first_prefix(const value_view& key) {
  return visit_view(
      []<class Key>(const Key& held) -> std::uint64_t {
        if constexpr (sorted_by_units<Key>) {
          return sort_word(sorted_units(held), 0);
        } else if constexpr (fits_sort_prefix<Key>) {
          return sort_prefix(held);
        } else {
          return 0;
        }
      },
      key);
}

// Returns a key of this kind, which is a single alternative.
value_view from_prefix(sort_kinds kind, std::uint64_t prefix) {
  value_view key;
  boost::mp11::mp_for_each<boost::mp11::mp_transform<std::type_identity, fitting_keys>>(
      [&]<class Key>(std::type_identity<Key> /*type*/) {
        if (kind == kind_of_alternative<Key>) key = from_sort_prefix<Key>(prefix);
      });
  return key;
}

}  // namespace

void sort_column::add_any(const value_view& key) {
  const sort_kinds kinds = kinds_ | sort_kind(key);
  if (!has_views_ && !have_exact_prefixes(kinds)) make_views();
  if (has_views_) {
    arena_.append_to(views_, key);
  } else {
    add_prefix(key);
  }
  kinds_ = kinds;
}

void sort_column::add_prefix(const value_view& key) {
  const bool is_null = std::holds_alternative<NullValue>(key);
  if (is_null && nulls_.empty()) nulls_.resize(prefixes_.size());
  if (is_null || has_nulls()) nulls_.push_back(is_null);
  visit_view(
      [this]<class Key>(const Key& held) {
        if constexpr (fits_sort_prefix<Key>) {
          prefixes_.push_back(sort_prefix(held));
        } else {
          prefixes_.push_back(0);  // NULL
        }
      },
      key);
}

void sort_column::make_views() {
  has_views_ = true;
  for (std::size_t i = 0; i < prefixes_.size(); ++i) {
    if (has_nulls() && nulls_[i]) {
      views_.emplace_back(NullValue());
    } else {
      views_.push_back(from_prefix(kinds_ & ~null_kind, prefixes_[i]));
    }
  }
  prefixes_ = {};
  nulls_ = {};
}

bool sort_column::is_null(std::size_t row_number) const {
  assert(row_number < size());
  if (!has_nulls()) return false;
  return has_views_ ? std::holds_alternative<NullValue>(views_[row_number]) : nulls_[row_number];
}

void sort_column::read_prefixes(std::span<sort_entry> rows, std::uint64_t mask, std::size_t word) const {
  assert(is_sortable());
  assert(word == 0 || has_views_);
  assert(std::ranges::none_of(rows, [this](const sort_entry& each) { return is_null(each.row); }));
  if (!has_views_) {
    for (sort_entry& each : rows) each.prefix = prefixes_[each.row] ^ mask;
  } else if (!rows.empty()) {
    visit_view(
        [&]<class Key>(const Key& /*first*/) {
          if constexpr (sorted_by_units<Key>) {
            for (sort_entry& each : rows) {
              each.prefix = sort_word(sorted_units(*std::get_if<Key>(&views_[each.row])), word) ^ mask;
            }
          } else if constexpr (!std::same_as<Key, std::monostate> && !std::same_as<Key, NullValue>) {
            for (sort_entry& each : rows) each.prefix = sort_prefix(*std::get_if<Key>(&views_[each.row])) ^ mask;
          }
        },
        views_[rows.front().row]);
  }
}

bool sort_column::ends_with_word(std::size_t row_number, std::size_t word) const {
  assert(has_views_ && row_number < size());
  return visit_view(
      [word]<class Key>(const Key& key) {
        if constexpr (sorted_by_units<Key>) return sql_executor::ends_with_word(sorted_units(key), word);
        return true;
      },
      views_[row_number]);
}

std::strong_ordering sort_column::order(std::size_t left, std::size_t right) const {
  assert(left < size() && right < size());
  if (has_views_) return sort_order(views_[left], views_[right]);
  if (is_null(left) || is_null(right)) return is_null(right) <=> is_null(left);  // NULL is lowest
  return prefixes_[left] <=> prefixes_[right];
}

// The limit may be NULL, which has the least prefix. Ascending, all greater prefixes are after it; descending, none is.
void sort_column::set_limit(std::size_t row_number, std::uint64_t mask) {
  assert(row_number < size());
  limit_kind_ = is_sortable() ? kinds_ & ~null_kind : 0;
  limit_ = (has_views_ ? first_prefix(views_[row_number]) : prefixes_[row_number]) ^ mask;
  limit_mask_ = mask;
}

// A key of another kind is not after the limit: it has to be added, since sorting may have to fail for it.
bool sort_column::is_any_after_limit(const value_view& key) const {
  return limit_kind_ != 0 && sort_kind(key) == limit_kind_ && (first_prefix(key) ^ limit_mask_) > limit_;
}

void sort_column::keep(const std::vector<std::size_t>& row_numbers) {
  large_vector<value_view> views;
  view_arena arena;
  std::vector<std::uint64_t> prefixes;
  std::vector<bool> nulls;
  for (const std::size_t kept : row_numbers) {
    assert(kept < size());
    if (has_views_) {
      arena.append_to(views, views_[kept]);
    } else {
      prefixes.push_back(prefixes_[kept]);
      if (has_nulls()) nulls.push_back(nulls_[kept]);
    }
  }
  // Copies them back into this column's memory: the memory of an arena cannot be moved to another one.
  views_.clear();
  arena_.release();
  for (const value_view& each : views) arena_.append_to(views_, each);
  prefixes_.assign(prefixes.begin(), prefixes.end());
  nulls_ = std::move(nulls);
}

}  // namespace ov::sql_executor
