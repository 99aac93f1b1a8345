#ifndef OV_SQL_EXECUTOR_VALUES_VALUE_FAMILY_HPP_
#define OV_SQL_EXECUTOR_VALUES_VALUE_FAMILY_HPP_

#include <array>
#include <cstdint>

#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// What compares with what: see comparison.hpp. none: of a valueless value.
enum class value_family : std::uint8_t { none, number, text, binary, reference, set_specifier, null };

inline value_family family_of(const value_view& any) {
  using enum value_family;
  static constexpr std::array<value_family, view_count> families = {
      none, number, text, number, number, number, number, number, binary, reference, set_specifier, null};
  return families[any.index()];
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_VALUE_FAMILY_HPP_
