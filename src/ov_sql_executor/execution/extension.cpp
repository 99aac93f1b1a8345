#include "ov_sql_executor/execution/extension.hpp"

#include "ov_sql_executor/execution/row_stack.hpp"
#include "ov_sql_executor/expressions/operand_list.hpp"

namespace ov::sql_executor {

namespace {

class extension_enumerator final : public row_source {
 public:
  extension_enumerator(const std::vector<operators::operand>& expressions, input_rows child)
      : expressions_(expressions), child_(std::move(child)) {}

  bool push_next(execution_context& context) override {
    if (!child_.push_next(context)) return false;
    if (expressions_.size() == 1) {
      expressions_.front().append_to(context.row_stack, context);
    } else {
      push_results(context);
    }
    return true;
  }

  void restart(execution_context& context, std::uint64_t most_rows) override { child_.start(context, most_rows); }

 private:
  // Several are made aside, since an operator of the host's own may look at the whole row stack.
  [[gnu::noinline]] void push_results(execution_context& context) {
    results_.clear();
    for (const operators::operand& expression : expressions_) expression.append_to(results_, context);
    move_onto_stack(context, results_);
  }

  const std::vector<operators::operand>& expressions_;  // the node's
  input_rows child_;
  row results_;  // its memory serves for all rows
};

}  // namespace

extension::extension(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> expressions)
    : child_(std::move(child)), expressions_(operators::to_operands(std::move(expressions))) {}

std::unique_ptr<row_source> extension::open(execution_context& context, std::uint64_t most_rows) const {
  return std::make_unique<extension_enumerator>(expressions_, child_.open(context, most_rows));
}

std::optional<std::size_t> extension::row_width() const {
  const std::optional<std::size_t> child = child_.row_width();
  return child ? std::optional(*child + expressions_.size()) : std::nullopt;
}

}  // namespace ov::sql_executor
