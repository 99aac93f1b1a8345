#include "ov_sql_executor/execution/keeping/equality_index.hpp"

#include <bit>
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

}  // namespace

void equality_index::add(const value_view& key) {
  if (std::holds_alternative<std::monostate>(key)) throw std::bad_variant_access();
  const auto row_number = static_cast<std::uint32_t>(next_.size());
  next_.push_back(none);
  if (std::holds_alternative<NullValue>(key)) return nulls_.push_back(row_number);
  kinds_ |= kind_bit(key);
  const value_view same[] = {equality_key(key)};
  const distinct_rows::place place = keys_.find_or_insert(same);
  if (place.is_new) {
    rows_.push_back({row_number, row_number});
  } else {
    chain& equal = rows_[place.index];
    next_[equal.last] = row_number;
    equal.last = row_number;
  }
}

bool equality_index::compares_with(const value_view& any) const {
  return !std::holds_alternative<std::monostate>(any) && std::popcount(kinds_ | kind_bit(any)) <= 1;
}

std::uint32_t equality_index::find_first(const value_view& any) const {
  if (std::holds_alternative<NullValue>(any)) return none;
  const value_view same[] = {equality_key(any)};
  const auto found = keys_.find(same);
  return found ? rows_[*found].first : none;
}

}  // namespace ov::sql_executor
