#ifndef OV_SQL_EXECUTOR_VALUES_SORT_ORDER_HPP_
#define OV_SQL_EXECUTOR_VALUES_SORT_ORDER_HPP_

#include <bit>
#include <boost/mp11/algorithm.hpp>
#include <cmath>
#include <compare>
#include <cstdint>
#include <variant>

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Orders values for sorting, maxima and minima. NULL is lowest and equals NULL. Throws std::logic_error "incompatible
// types" for two values of different alternatives, db_exception out_of_range for a NaN on either side and
// std::bad_variant_access for the view of a valueless value.
std::strong_ordering sort_order(const value_view& left, const value_view& right);

// The kinds of some values: a bit for each alternative, and one for NaNs.
using sort_kinds = std::uint32_t;

template <class T>
inline constexpr sort_kinds kind_of_alternative = sort_kinds{1} << boost::mp11::mp_find<value_view, T>::value;

inline sort_kinds sort_kind(const value_view& each) {
  const sort_kinds kind = sort_kinds{1} << each.index();
  const auto* const number = std::get_if<double>(&each);
  const auto* const small_number = std::get_if<float>(&each);
  const bool is_nan =
      (number != nullptr && std::isnan(*number)) || (small_number != nullptr && std::isnan(*small_number));
  return is_nan ? kind | sort_kinds{1} << view_count : kind;
}

// Tells whether sort_order can order any two values of these kinds.
inline bool is_sortable(sort_kinds kinds) {
  return std::popcount(kinds & ~kind_of_alternative<operator_library::NullValue>) <= 1;
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_SORT_ORDER_HPP_
