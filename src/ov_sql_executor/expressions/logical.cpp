#include "ov_sql_executor/expressions/logical.hpp"

#include "ov_sql_executor/values/typed_view.hpp"

namespace ov::sql_executor::operators {

using operator_library::NullValue;

template <bool Decisive, class Operands>
value_view connective<Decisive, Operands>::lend(execution_context& context, value& scratch) const {
  const operand& last = operands_.back();
  bool has_null = false;
  for (const operand* each = operands_.data(); each != &last; ++each) {
    const value_view view = each->lend(context, scratch);
    const bool* truth = expect_or_null<bool>(view);
    if (truth != nullptr && *truth == Decisive) return view;
    has_null = has_null || truth == nullptr;
  }
  const value_view view = last.lend(context, scratch);
  if (!has_null) return view;
  const bool* truth = expect_or_null<bool>(view);
  if (truth != nullptr && *truth == Decisive) return view;
  return NullValue{};
}

template <bool Decisive, class Operands>
truth connective<Decisive, Operands>::test(execution_context& context) const {
  constexpr truth decided = Decisive ? truth::yes : truth::no;
  truth whole = Decisive ? truth::no : truth::yes;
  for (const operand& each : operands_) {
    const truth one = each.test(context);
    if (one == decided) return one;
    if (one == truth::unknown) whole = one;
  }
  return whole;
}

template class connective<false, std::array<operand, 2>>;
template class connective<true, std::array<operand, 2>>;
template class connective<false, std::vector<operand>>;
template class connective<true, std::vector<operand>>;

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
