#include "ov_sql_executor/expressions/comparison.hpp"

#include "ov_sql_executor/values/comparison.hpp"
#include "ov_sql_executor/values/numeric_order.hpp"

namespace ov::sql_executor::operators {

template <class Relation>
truth comparison<Relation>::test(execution_context& context) const {
  // The commonest comparisons, of a number column with a number or with another column, go without views.
  if (left_.is_int64_property()) {
    std::int64_t left = 0;
    if (const auto* right = right_.find<std::int64_t>(context)) {
      return left_.read_int64(context, left) ? to_truth(Relation::holds(left <=> *right)) : truth::unknown;
    }
    if (const auto* right = right_.find<double>(context)) {
      if (!left_.read_int64(context, left)) return truth::unknown;
      return to_truth(Relation::holds(compare_numbers(left, *right)));
    }
    if (right_.is_int64_property()) {
      std::int64_t right = 0;
      const bool has_right = right_.read_int64(context, right);
      const bool has_left = left_.read_int64(context, left);
      return has_left && has_right ? to_truth(Relation::holds(left <=> right)) : truth::unknown;
    }
  }
  value right_room;
  byte_buffer right_bytes;
  const value_view right = right_.hold(context, right_room, right_bytes);
  value left_room;
  const value_view left = left_.lend(context, left_room);
  const auto order = compare_values(left, right);
  return order ? to_truth(Relation::holds(*order)) : truth::unknown;
}

template class comparison<is_equal>;
template class comparison<is_not_equal>;
template class comparison<is_less>;
template class comparison<is_less_or_equal>;
template class comparison<is_greater>;
template class comparison<is_greater_or_equal>;

}  // namespace ov::sql_executor::operators
