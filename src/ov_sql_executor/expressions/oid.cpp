#include "ov_sql_executor/expressions/oid.hpp"

#include "ov_sql_executor/values/typed_view.hpp"

namespace ov::sql_executor::operators {

value_view oid::lend(execution_context& context, value& scratch) const {
  const value_view object = operand_.lend(context, scratch);
  const auto* reference = expect_or_null<OV_OBJ_REF>(object);
  if (reference == nullptr) return object;
  return reference->object_number;
}

}  // namespace ov::sql_executor::operators
