#include "ov_sql_executor/execution/extension.hpp"

#include "ov_sql_executor/execution/stack_row.hpp"
#include "ov_sql_executor/expressions/operand_list.hpp"

namespace ov::sql_executor {

namespace {

class extension_enumerator final : public row_source {
 public:
  extension_enumerator(const std::vector<operators::operand>& expressions, std::unique_ptr<row_source> child)
      : expressions_(expressions), child_(std::move(child)) {}

  bool push_next(execution_context& context) override {
    if (!child_->push_next(context)) return false;
    if (expressions_.size() == 1) {
      expressions_.front().append_to(context.row_stack, context);
    } else {
      push_results(context);
    }
    return true;
  }

 private:
  // Several are made aside, since an operator of the host's own may look at the whole row stack.
  [[gnu::noinline]] void push_results(execution_context& context) {
    results_.clear();
    for (const operators::operand& expression : expressions_) expression.append_to(results_, context);
    move_onto_stack(context, results_);
  }

  const std::vector<operators::operand>& expressions_;  // the node's
  std::unique_ptr<row_source> child_;
  row results_;  // its memory serves for all rows
};

}  // namespace

extension::extension(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> expressions)
    : child_(std::move(child)), expressions_(operators::to_operands(std::move(expressions))) {}

std::unique_ptr<row_source> extension::open(execution_context& context) const {
  return std::make_unique<extension_enumerator>(expressions_, child_.open(context));
}

std::unique_ptr<row_source> extension::open_first(std::uint64_t count, execution_context& context) const {
  return std::make_unique<extension_enumerator>(expressions_, child_.open_first(count, context));
}

}  // namespace ov::sql_executor
