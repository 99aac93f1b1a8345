#include "ov_sql_executor/expressions/comparison.hpp"

#include "ov_sql_executor/values/comparison.hpp"

namespace ov::sql_executor::operators {

template <class Relation>
value_view comparison<Relation>::lend(execution_context& context, value& room) const {
  const value_view right = right_.hold(context, room);
  value left_room;
  const value_view left = left_.lend(context, left_room);
  const auto order = compare_values(left, right);
  if (!order) return operator_library::NullValue{};
  return Relation::holds(*order);
}

template class comparison<is_equal>;
template class comparison<is_not_equal>;
template class comparison<is_less>;
template class comparison<is_less_or_equal>;
template class comparison<is_greater>;
template class comparison<is_greater_or_equal>;

}  // namespace ov::sql_executor::operators
