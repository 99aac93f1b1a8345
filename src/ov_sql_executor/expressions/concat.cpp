#include "ov_sql_executor/expressions/concat.hpp"

#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/values/typed_view.hpp"

namespace ov::sql_executor::operators {

value concat::evaluate(execution_context& context) const {
  db_util::unit_buffer joined;
  for (const operand& each : operands_) {
    value scratch;
    const value_view any = each.lend(context, scratch);
    const auto* text = expect_or_null<text_view>(any);
    if (text == nullptr) return operator_library::NullValue{};
    db_util::append_ucs2(*text, joined);
  }
  return db_util::ucs2_to_turbotext(context.context_handle, joined, db_util::upper_limit::no);
}

}  // namespace ov::sql_executor::operators
