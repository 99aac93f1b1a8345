#include "ov_sql_executor/expressions/operand_views.hpp"

#include <cassert>
#include <new>

namespace ov::sql_executor::operators {

std::span<const value_view> operand_views::evaluate(std::span<const operand> operands, execution_context& context) {
  assert(operands.size() == views_.size());
  for (std::size_t i = 0; i < operands.size(); ++i) {
    const bool is_last = i + 1 == operands.size();
    // Builds the view in its place: to copy a view that was just made would wait until all its parts are written.
    new (&views_[i])
        value_view(is_last ? operands[i].lend(context, scratch_[i].made) : operands[i].pin(context, scratch_[i]));
  }
  return views_;
}

}  // namespace ov::sql_executor::operators
