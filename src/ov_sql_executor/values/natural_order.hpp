#ifndef OV_SQL_EXECUTOR_VALUES_NATURAL_ORDER_HPP_
#define OV_SQL_EXECUTOR_VALUES_NATURAL_ORDER_HPP_

#include <algorithm>
#include <compare>
#include <cstring>
#include <string_view>

#include "ov_sql_executor/values/encoded_text.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Orders values of one alternative that is not a number.

inline std::strong_ordering natural_order(const text_view& left, const text_view& right) {
  return compare_texts(left, right);
}

// Compares unsigned bytes. A binary that begins the other one is less.
inline std::strong_ordering natural_order(const binary_view& left, const binary_view& right) {
  const std::size_t common = std::min(left.bytes.size(), right.bytes.size());
  const int order = common == 0 ? 0 : std::memcmp(left.bytes.data(), right.bytes.data(), common);
  return order != 0 ? order <=> 0 : left.bytes.size() <=> right.bytes.size();
}

// Compares the object number alone.
inline std::strong_ordering natural_order(const OV_OBJ_REF& left, const OV_OBJ_REF& right) {
  return left.object_number <=> right.object_number;
}

// Compares unsigned code units. A specifier that begins the other one is less.
inline std::strong_ordering natural_order(std::u16string_view left, std::u16string_view right) {
  return left <=> right;
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_NATURAL_ORDER_HPP_
