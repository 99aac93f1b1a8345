#include "ov_sql_executor/expressions/logical.hpp"

#include "ov_sql_executor/values/typed_view.hpp"

namespace ov::sql_executor::operators {

using operator_library::NullValue;

template <bool Decisive>
value_view connective<Decisive>::lend(execution_context& context, value& room) const {
  const value_view left = left_.lend(context, room);
  if (const bool* truth = expect_or_null<bool>(left)) return *truth == Decisive ? left : right_.lend(context, room);
  const value_view right = right_.lend(context, room);
  const bool* truth = expect_or_null<bool>(right);
  if (truth != nullptr && *truth == Decisive) return right;
  return NullValue{};
}

template class connective<false>;
template class connective<true>;

value_view logical_not::lend(execution_context& context, value& room) const {
  const value_view any = operand_.lend(context, room);
  const bool* truth = expect_or_null<bool>(any);
  if (truth == nullptr) return any;
  return !*truth;
}

value_view xor_op::lend(execution_context& context, value& room) const {
  const value_view left = left_.lend(context, room);
  const bool* left_truth = expect_or_null<bool>(left);
  if (left_truth == nullptr) return left;
  const value_view right = right_.lend(context, room);
  const bool* right_truth = expect_or_null<bool>(right);
  if (right_truth == nullptr) return right;
  return *left_truth != *right_truth;
}

}  // namespace ov::sql_executor::operators
