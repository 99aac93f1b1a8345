#ifndef OV_SQL_EXECUTOR_VALUES_PAIR_DISPATCH_HPP_
#define OV_SQL_EXECUTOR_VALUES_PAIR_DISPATCH_HPP_

#include <array>
#include <concepts>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <variant>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// One entry of a pair table, with the rules that all families share: a valueless side is misuse, NULL wins over every
// type error, and a pair that the family has no kernel for is a type error.
template <class Family, std::size_t LeftIndex, std::size_t RightIndex>
typename Family::result apply_to_pair(const value_view& left, const value_view& right) {
  using Left = std::variant_alternative_t<LeftIndex, value_view>;
  using Right = std::variant_alternative_t<RightIndex, value_view>;
  using operator_library::NullValue;
  if constexpr (std::same_as<Left, std::monostate> || std::same_as<Right, std::monostate>) {
    throw std::bad_variant_access();
  } else if constexpr (std::same_as<Left, NullValue> || std::same_as<Right, NullValue>) {
    return Family::null();
  } else if constexpr (requires { Family::apply(std::declval<const Left&>(), std::declval<const Right&>()); }) {
    return Family::apply(*std::get_if<LeftIndex>(&left), *std::get_if<RightIndex>(&right));
  } else {
    throw db_util::db_exception{db_util::type_error};
  }
}

// The 144 entries of a family of two-operand operations. The index is 12 * left + right of the views' indices.
template <class Family>
class pair_table {
 public:
  using entry = typename Family::result (*)(const value_view&, const value_view&);

  static typename Family::result dispatch(const value_view& left, const value_view& right) {
    return entries[view_count * left.index() + right.index()](left, right);
  }

 private:
  template <std::size_t... Cases>
  static constexpr std::array<entry, sizeof...(Cases)> make(std::index_sequence<Cases...>) {
    return {&apply_to_pair<Family, Cases / view_count, Cases % view_count>...};
  }

  static constexpr std::array<entry, view_count* view_count> entries =
      make(std::make_index_sequence<view_count * view_count>());
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_PAIR_DISPATCH_HPP_
