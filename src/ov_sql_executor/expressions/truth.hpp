#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_TRUTH_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_TRUTH_HPP_

#include <cstdint>

#include "ov_sql_executor/values/typed_view.hpp"

namespace ov::sql_executor::operators {

// SQL's three truth values; unknown is NULL.
enum class truth : std::uint8_t { no, yes, unknown };

inline truth to_truth(bool known) { return known ? truth::yes : truth::no; }

// Throws db_exception type_error for a view that is neither a bool nor NULL and std::bad_variant_access for the view of
// a valueless value.
inline truth to_truth(const value_view& any) {
  const bool* known = expect_or_null<bool>(any);
  return known != nullptr ? to_truth(*known) : truth::unknown;
}

inline value_view view_of_truth(truth any) {
  if (any == truth::unknown) return operator_library::NullValue{};
  return any == truth::yes;
}

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_TRUTH_HPP_
