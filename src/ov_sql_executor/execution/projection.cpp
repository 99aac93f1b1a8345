#include "ov_sql_executor/execution/projection.hpp"

#include "ov_sql_executor/execution/stack_row.hpp"
#include "ov_sql_executor/expressions/operand_list.hpp"

namespace ov::sql_executor {

namespace {

class projection_enumerator final : public row_source {
 public:
  projection_enumerator(const std::vector<operators::operand>& expressions, std::unique_ptr<row_source> child)
      : expressions_(expressions), child_(std::move(child)) {}

  // The results are made behind the input row, which is then taken out from under them.
  bool push_next(execution_context& context) override {
    const auto size = static_cast<std::ptrdiff_t>(context.row_stack.size());
    if (!child_->push_next(context)) return false;
    const auto input_end = static_cast<std::ptrdiff_t>(context.row_stack.size());
    for (const operators::operand& expression : expressions_) expression.append_to(context.row_stack, context);
    const auto stack = context.row_stack.begin();
    context.row_stack.erase(stack + size, stack + input_end);
    return true;
  }

  // Asked from outside, the results are made where they stay.
  std::optional<row> next(execution_context& context) override {
    const std::size_t size = context.row_stack.size();
    if (!child_->push_next(context)) return std::nullopt;
    row result;
    result.reserve(expressions_.size());
    for (const operators::operand& expression : expressions_) expression.append_to(result, context);
    cut_row_stack(context, size);
    return result;
  }

 private:
  const std::vector<operators::operand>& expressions_;  // the node's
  std::unique_ptr<row_source> child_;
};

}  // namespace

projection::projection(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> expressions)
    : child_(std::move(child)), expressions_(operators::to_operands(std::move(expressions))) {}

std::unique_ptr<row_source> projection::open(execution_context& context) const {
  return std::make_unique<projection_enumerator>(expressions_, child_.open(context));
}

}  // namespace ov::sql_executor
