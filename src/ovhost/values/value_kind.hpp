#ifndef OVHOST_VALUES_VALUE_KIND_HPP_
#define OVHOST_VALUES_VALUE_KIND_HPP_

#include <cstddef>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "ov_sql_executor/values/value.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// The type of a column or an expression, numbered like the alternatives of value.
enum class value_kind : std::size_t {
  boolean,
  text,
  uint64,
  int64,
  decimal,
  float64,
  float32,
  binary,
  reference,
  set_specifier,
  null
};

inline constexpr std::size_t value_kind_count = std::variant_size_v<ov::sql_executor::value>;

// Returns the kind of the values of a C++ type. Requires: T is an alternative of value.
template <class T, std::size_t Index = 0>
constexpr value_kind kind_of_type() {
  if constexpr (std::is_same_v<T, std::variant_alternative_t<Index, ov::sql_executor::value>>) {
    return value_kind{Index};
  } else {
    return kind_of_type<T, Index + 1>();
  }
}
static_assert(value_kind::null == kind_of_type<operator_library::NullValue>() &&
              value_kind::null == value_kind{value_kind_count - 1});

// Returns "bool", "text", "uint64", ... Valid until: the program ends.
OVHOST_API std::string_view name_of(value_kind kind);

// Calls function.operator()<T>() with the C++ type that values of that kind have.
template <std::size_t Index = 0, class Function>
auto with_type_of(value_kind kind, Function&& function) {
  using type = std::variant_alternative_t<Index, ov::sql_executor::value>;
  if constexpr (Index + 1 == value_kind_count) {
    return std::forward<Function>(function).template operator()<type>();
  } else {
    if (kind == value_kind{Index}) return std::forward<Function>(function).template operator()<type>();
    return with_type_of<Index + 1>(kind, std::forward<Function>(function));
  }
}

}  // namespace ovhost

#endif  // OVHOST_VALUES_VALUE_KIND_HPP_
