#include "ov_sql_executor/expressions/predicate.hpp"

#include "ov_sql_executor/values/typed_view.hpp"

namespace ov::sql_executor::operators {

bool holds(const operand& condition, execution_context& context) {
  value room;
  const value_view result = condition.lend(context, room);
  const bool* truth = expect_or_null<bool>(result);
  return truth != nullptr && *truth;
}

}  // namespace ov::sql_executor::operators
