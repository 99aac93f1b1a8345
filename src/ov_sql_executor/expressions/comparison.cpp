#include "ov_sql_executor/expressions/comparison.hpp"

#include "ov_sql_executor/values/comparison.hpp"
#include "ov_sql_executor/values/numeric_order.hpp"

namespace ov::sql_executor::operators {

template <class Relation>
truth comparison<Relation>::test(execution_context& context) const {
  return operand::compare(
      left_, right_, context, truth::unknown,
      [](auto left, auto right) { return to_truth(Relation::holds(compare_numbers(left, right))); },
      [&] {
        scratch_space right_scratch;
        const value_view right = right_.pin(context, right_scratch);
        value left_scratch;
        const value_view left = left_.lend(context, left_scratch);
        const auto order = compare_values(left, right);
        return order ? to_truth(Relation::holds(*order)) : truth::unknown;
      });
}

template class comparison<is_equal>;
template class comparison<is_not_equal>;
template class comparison<is_less>;
template class comparison<is_less_or_equal>;
template class comparison<is_greater>;
template class comparison<is_greater_or_equal>;

}  // namespace ov::sql_executor::operators
