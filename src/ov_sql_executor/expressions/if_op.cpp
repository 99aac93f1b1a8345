#include "ov_sql_executor/expressions/if_op.hpp"

#include "ov_sql_executor/expressions/conversion.hpp"

namespace ov::sql_executor::operators {

template <class Result>
value_view if_op<Result>::lend(execution_context& context, value& scratch) const {
  const operand& branch = condition_.holds(context) ? then_value_ : else_value_;
  return convert_in<Result>(branch.lend(context, scratch), scratch);
}

template class if_op<bool>;
template class if_op<db_string::tt_string>;
template class if_op<std::uint64_t>;
template class if_op<std::int64_t>;
template class if_op<operator_library::Decimal>;
template class if_op<double>;
template class if_op<float>;
template class if_op<operator_library::Binary>;
template class if_op<OV_OBJ_REF>;
template class if_op<operator_library::SetSpecifier>;
template class if_op<operator_library::NullValue>;

}  // namespace ov::sql_executor::operators
