#ifndef OV_SQL_EXECUTOR_VALUES_TYPED_VIEW_HPP_
#define OV_SQL_EXECUTOR_VALUES_TYPED_VIEW_HPP_

#include <variant>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor {

// Returns what a view shows where only one alternative will do; null for NULL. Throws db_exception type_error for any
// other alternative and std::bad_variant_access for the view of a valueless value.
template <class View>
const View* expect_or_null(const value_view& any) {
  if (const View* expected = std::get_if<View>(&any)) return expected;
  if (std::holds_alternative<operator_library::NullValue>(any)) return nullptr;
  if (std::holds_alternative<std::monostate>(any)) throw std::bad_variant_access();
  throw db_util::db_exception{db_util::type_error};
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_VALUES_TYPED_VIEW_HPP_
