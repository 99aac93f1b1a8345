#include "ov_sql_executor/values/comparison.hpp"

#include "ov_sql_executor/values/encoded_text.hpp"
#include "ov_sql_executor/values/natural_order.hpp"
#include "ov_sql_executor/values/numeric_order.hpp"
#include "ov_sql_executor/values/pair_dispatch.hpp"

namespace ov::sql_executor {

namespace {

// Accepts every number with every number, and anything else with its own alternative only.
struct comparison_family {
  using result = std::optional<std::partial_ordering>;

  static result null() { return std::nullopt; }

  template <numeric_alternative Left, numeric_alternative Right>
  static result apply(const Left& left, const Right& right) {
    return compare_numbers(left, right);
  }

  template <class Same>
  requires(!numeric_alternative<Same>) static result apply(const Same& left, const Same& right) {
    return natural_order(left, right);
  }
};

}  // namespace

std::optional<std::partial_ordering> compare_values(const value_view& left, const value_view& right) {
  return pair_table<comparison_family>::dispatch(left, right);
}

}  // namespace ov::sql_executor
