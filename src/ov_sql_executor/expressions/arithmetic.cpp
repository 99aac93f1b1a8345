#include "ov_sql_executor/expressions/arithmetic.hpp"

namespace ov::sql_executor::operators {

template <pair_operation Operation>
value_view binary_arithmetic<Operation>::lend(execution_context& context, value& scratch) const {
  value left_scratch;
  const value_view left = left_.pin(context, left_scratch);
  const value_view right = right_.lend(context, scratch);
  return Operation(left, right);
}

template class binary_arithmetic<add_values>;
template class binary_arithmetic<subtract_values>;
template class binary_arithmetic<multiply_values>;
template class binary_arithmetic<divide_values>;

}  // namespace ov::sql_executor::operators
