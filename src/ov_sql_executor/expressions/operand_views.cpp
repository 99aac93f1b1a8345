#include "ov_sql_executor/expressions/operand_views.hpp"

#include <new>

namespace ov::sql_executor::operators {

std::span<const value_view> operand_views::evaluate(std::span<const operand> operands, execution_context& context) {
  for (std::size_t i = 0; i < operands.size(); ++i) {
    slot& own = slots_[i];
    const bool is_last = i + 1 == operands.size();
    // Made in its place: copying a view that was just made would wait until all parts of it are written.
    new (&views_[i])
        value_view(is_last ? operands[i].lend(context, own.room) : operands[i].hold(context, own.room, own.bytes));
  }
  return views_;
}

}  // namespace ov::sql_executor::operators
