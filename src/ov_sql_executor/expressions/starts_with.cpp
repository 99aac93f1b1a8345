#include "ov_sql_executor/expressions/starts_with.hpp"

#include "ov_sql_executor/values/encoded_text.hpp"
#include "ov_sql_executor/values/pair_dispatch.hpp"

namespace ov::sql_executor::operators {

namespace {

// Accepts two texts.
struct prefix_family {
  using result = value_view;

  static result null() { return operator_library::NullValue{}; }
  static result apply(const text_view& text, const text_view& prefix) { return text_starts_with(text, prefix); }
};

}  // namespace

value_view starts_with::lend(execution_context& context, value& scratch) const {
  scratch_space prefix_scratch;
  const value_view prefix = right_.pin(context, prefix_scratch);
  const value_view text = left_.lend(context, scratch);
  return pair_table<prefix_family>::dispatch(text, prefix);
}

}  // namespace ov::sql_executor::operators
