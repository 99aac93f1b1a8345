#include "ov_sql_executor/execution/filter.hpp"

#include "ov_sql_executor/execution/stack_row.hpp"

namespace ov::sql_executor {

namespace {

class filter_enumerator final : public row_source {
 public:
  filter_enumerator(const operators::operand& predicate, std::unique_ptr<row_source> child)
      : predicate_(predicate), child_(std::move(child)) {}

  bool push_next(execution_context& context) override {
    const std::size_t size = context.row_stack.size();
    while (child_->push_next(context)) {
      if (predicate_.holds(context)) return true;
      cut_row_stack(context, size);
    }
    return false;
  }

  void reopen(const input& child, execution_context& context) { child.reopen(child_, context); }

 private:
  const operators::operand& predicate_;  // the node's
  std::unique_ptr<row_source> child_;
};

}  // namespace

std::unique_ptr<row_source> filter::open(execution_context& context) const {
  return std::make_unique<filter_enumerator>(predicate_, child_.open(context));
}

void filter::reopen(std::unique_ptr<row_source>& used, execution_context& context) const {
  static_cast<filter_enumerator&>(*used).reopen(child_, context);
}

}  // namespace ov::sql_executor
