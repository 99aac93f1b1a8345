#include "ov_sql_executor/expressions/comparison.hpp"

#include "ov_sql_executor/values/comparison.hpp"

namespace ov::sql_executor::operators {

template <class Relation>
truth comparison<Relation>::test(execution_context& context) const {
  value right_room;
  const value_view right = right_.hold(context, right_room);
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
