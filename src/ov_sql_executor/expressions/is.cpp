#include "ov_sql_executor/expressions/is.hpp"

#include <string_view>

#include "ov_sql_executor/database/set_membership.hpp"
#include "ov_sql_executor/values/typed_view.hpp"

namespace ov::sql_executor::operators {

value_view is::lend(execution_context& context, value& scratch) const {
  value type_scratch;
  const value_view right = right_.pin(context, type_scratch);
  const auto* specifier = expect_or_null<std::u16string_view>(right);
  if (specifier == nullptr) return right;
  const value_view left = left_.lend(context, scratch);
  const auto* object = expect_or_null<OV_OBJ_REF>(left);
  if (object == nullptr) return left;
  const auto found = db_util::is_in_set(context.context_handle, *object, *specifier);
  if (!found) return operator_library::NullValue{};
  return *found;
}

}  // namespace ov::sql_executor::operators
