#include "ov_sql_executor/values/sort_order.hpp"

#include <stdexcept>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/natural_order.hpp"
#include "ov_sql_executor/values/numeric_type.hpp"

namespace ov::sql_executor {

namespace {

using operator_library::NullValue;

template <class T>
std::strong_ordering order_same(const T& left, const T& right) {
  if constexpr (std::same_as<T, std::monostate>) {
    throw std::bad_variant_access();
  } else if constexpr (std::same_as<T, NullValue>) {
    return std::strong_ordering::equal;
  } else if constexpr (floating_alternative<T>) {
    const std::partial_ordering order = left <=> right;
    if (order == std::partial_ordering::unordered) throw db_util::db_exception{db_util::out_of_range};
    return order < 0   ? std::strong_ordering::less
           : order > 0 ? std::strong_ordering::greater
                       : std::strong_ordering::equal;
  } else if constexpr (numeric_alternative<T>) {
    return left <=> right;
  } else {
    return natural_order(left, right);
  }
}

std::strong_ordering order_different(const value_view& left, const value_view& right) {
  if (std::holds_alternative<std::monostate>(left) || std::holds_alternative<std::monostate>(right)) {
    throw std::bad_variant_access();
  }
  if (std::holds_alternative<NullValue>(left)) return std::strong_ordering::less;
  if (std::holds_alternative<NullValue>(right)) return std::strong_ordering::greater;
  throw std::logic_error("incompatible types");
}

}  // namespace

std::strong_ordering sort_order(const value_view& left, const value_view& right) {
  if (left.index() != right.index()) return order_different(left, right);
  return visit_view([&right]<class T>(const T& held) { return order_same(held, *std::get_if<T>(&right)); }, left);
}

}  // namespace ov::sql_executor
