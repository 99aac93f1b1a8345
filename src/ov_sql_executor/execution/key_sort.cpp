#include "ov_sql_executor/execution/key_sort.hpp"

#include <algorithm>
#include <boost/sort/pdqsort/pdqsort.hpp>
#include <variant>

#include "ov_sql_executor/values/sort_order.hpp"
#include "ov_sql_executor/values/sort_prefix.hpp"

namespace ov::sql_executor {

namespace {

using operator_library::NullValue;

// Below this, comparing whole keys costs less than preparing prefixes.
constexpr std::ptrdiff_t short_run = 12;

}  // namespace

std::vector<std::size_t> key_sort::sorted_rows(std::size_t count) {
  std::vector<entry> rows(count);
  for (std::size_t i = 0; i < count; ++i) rows[i].row = i;
  put_off({rows.begin(), rows.end(), 0});
  while (!unsorted_.empty()) {
    const run next = unsorted_.back();
    unsorted_.pop_back();
    sort(next);
  }
  std::vector<std::size_t> numbers(count);
  std::transform(rows.begin(), rows.end(), numbers.begin(), [](const entry& each) { return each.row; });
  return numbers;
}

void key_sort::put_off(const run& rows) {
  if (rows.end - rows.begin > 1 && rows.key < ascending_.size()) unsorted_.push_back(rows);
}

void key_sort::sort(const run& rows) {
  if (rows.end - rows.begin < short_run) return sort_by_comparison(rows);
  const iterator middle = divide_nulls(rows);
  const bool nulls_first = ascending_[rows.key];
  put_off(nulls_first ? run{rows.begin, middle, rows.key + 1} : run{middle, rows.end, rows.key + 1});
  sort_values(nulls_first ? run{middle, rows.end, rows.key} : run{rows.begin, middle, rows.key});
}

// NULL is the lowest key, which a prefix cannot say. Returns where the ones end and the others begin.
key_sort::iterator key_sort::divide_nulls(const run& rows) const {
  return std::partition(rows.begin, rows.end, [&](const entry& each) {
    return std::holds_alternative<NullValue>(key_of(each, rows.key)) == ascending_[rows.key];
  });
}

void key_sort::sort_values(const run& rows) {
  if (rows.begin == rows.end) return;
  const prefixes found = read_prefixes(rows);
  if (found == prefixes::none) return sort_by_comparison(rows);
  boost::sort::pdqsort_branchless(rows.begin, rows.end,
                                  [](const entry& left, const entry& right) { return left.prefix < right.prefix; });
  for (iterator begin = rows.begin; begin != rows.end;) {
    const iterator end =
        std::find_if(begin + 1, rows.end, [&](const entry& each) { return each.prefix != begin->prefix; });
    if (end - begin > 1) sort_equals({begin, end, rows.key}, found);
    begin = end;
  }
}

// None where two of the keys cannot be compared: then nothing but the comparison itself can say why.
key_sort::prefixes key_sort::read_prefixes(const run& rows) const {
  const std::uint64_t turned = ascending_[rows.key] ? 0 : ~std::uint64_t{0};
  return std::visit(
      [&]<class Key>(const Key& /*first*/) {
        if constexpr (std::same_as<Key, std::monostate> || std::same_as<Key, NullValue>) {
          return prefixes::none;
        } else {
          const bool are_all_read = std::all_of(rows.begin, rows.end, [&](entry& each) {
            const Key* const key = std::get_if<Key>(&key_of(each, rows.key));
            if (key == nullptr) return false;
            if constexpr (floating_alternative<Key>) {
              if (std::isnan(*key)) return false;
            }
            each.prefix = sort_prefix(*key) ^ turned;
            return true;
          });
          if (!are_all_read) return prefixes::none;
          return fits_sort_prefix<Key> ? prefixes::whole_keys : prefixes::beginnings;
        }
      },
      key_of(*rows.begin, rows.key));
}

// Rows with the same prefix.
void key_sort::sort_equals(const run& rows, prefixes found) {
  if (found == prefixes::whole_keys || are_all_equal(rows)) {
    put_off({rows.begin, rows.end, rows.key + 1});
  } else {
    sort_by_comparison(rows);
  }
}

bool key_sort::are_all_equal(const run& rows) const {
  const value_view& first = key_of(*rows.begin, rows.key);
  return std::all_of(rows.begin + 1, rows.end,
                     [&](const entry& each) { return sort_order(first, key_of(each, rows.key)) == 0; });
}

void key_sort::sort_by_comparison(const run& rows) const {
  boost::sort::pdqsort(rows.begin, rows.end, [this, &rows](const entry& left, const entry& right) {
    return goes_before(left, right, rows.key);
  });
}

bool key_sort::goes_before(const entry& left, const entry& right, std::size_t key) const {
  for (; key < ascending_.size(); ++key) {
    const std::strong_ordering order = sort_order(key_of(left, key), key_of(right, key));
    if (order != 0) return ascending_[key] ? order < 0 : order > 0;
  }
  return false;
}

}  // namespace ov::sql_executor
