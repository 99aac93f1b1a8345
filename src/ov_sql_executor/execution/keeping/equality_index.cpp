#include "ov_sql_executor/execution/keeping/equality_index.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <variant>

#include "ov_sql_executor/values/equality_key.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"

namespace ov::sql_executor {

namespace {

using operator_library::NullValue;

// A bit for each kind of values that compare with each other; 0 for NULL, which compares with all.
unsigned kind_bit(const value_view& any) {
  return visit_view(
      [&any]<class T>(const T&) -> unsigned {
        if constexpr (std::same_as<T, NullValue>) return 0;
        if constexpr (numeric_alternative<T>) return 1;
        return 1U << any.index();
      },
      any);
}

// Makes equal values alike.
void make_keys(std::span<value_view> values) {
  for (value_view& each : values) each = equality_key(each);
}

template <class View>
bool shows(const value_view& any) {
  return std::holds_alternative<View>(any);
}
bool equals_nothing(const value_view& key) {
  const auto* const number = std::get_if<double>(&key);
  return number != nullptr && std::isnan(*number);
}

}  // namespace

void equality_index::add(std::span<value_view> keys) {
  if (std::ranges::any_of(keys, shows<std::monostate>)) throw std::bad_variant_access();
  const auto row_number = static_cast<std::uint32_t>(next_.size());
  next_.push_back(none);
  for (std::size_t i = 0; i < keys.size(); ++i) kinds_[i] |= kind_bit(keys[i]);
  if (std::ranges::any_of(keys, shows<NullValue>)) return nulls_.push_back(row_number);
  make_keys(keys);
  if (std::ranges::any_of(keys, equals_nothing)) return;
  const distinct_rows::place place = keys_.find_or_insert(keys);
  if (place.is_new) return rows_.push_back({row_number, row_number});
  chain& equal = rows_[place.index];
  next_[equal.last] = row_number;
  equal.last = row_number;
}

std::size_t equality_index::byte_count() const {
  return keys_.byte_count() + rows_.capacity() * sizeof(chain) +
         (next_.capacity() + nulls_.capacity()) * sizeof(std::uint32_t);
}

bool equality_index::compare_with(std::span<const value_view> values) const {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (shows<std::monostate>(values[i]) || std::popcount(kinds_[i] | kind_bit(values[i])) > 1) return false;
  }
  return true;
}

std::uint32_t equality_index::find_first(std::span<value_view> values) const {
  make_keys(values);
  const auto found = keys_.find(values);
  return found ? rows_[*found].first : none;
}

}  // namespace ov::sql_executor
