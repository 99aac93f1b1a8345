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

template <bool Decisive>
truth connective<Decisive>::test(execution_context& context) const {
  constexpr truth decided = Decisive ? truth::yes : truth::no;
  const truth left = left_.test(context);
  if (left == decided) return left;
  const truth right = right_.test(context);
  return right == decided || left != truth::unknown ? right : truth::unknown;
}

template class connective<false>;
template class connective<true>;

truth logical_not::test(execution_context& context) const {
  const truth operand = operand_.test(context);
  return operand == truth::unknown ? operand : to_truth(operand == truth::no);
}

truth xor_op::test(execution_context& context) const {
  const truth left = left_.test(context);
  if (left == truth::unknown) return left;
  const truth right = right_.test(context);
  return right == truth::unknown ? right : to_truth(left != right);
}

}  // namespace ov::sql_executor::operators
