#include "ov_sql_executor/expressions/null_test.hpp"

#include <variant>

namespace ov::sql_executor::operators {

template <bool WhenNull>
truth null_test<WhenNull>::test(execution_context& context) const {
  value scratch;
  const value_view any = operand_.lend(context, scratch);
  if (std::holds_alternative<std::monostate>(any)) throw std::bad_variant_access();
  return to_truth(std::holds_alternative<operator_library::NullValue>(any) == WhenNull);
}

template class null_test<true>;
template class null_test<false>;

}  // namespace ov::sql_executor::operators
