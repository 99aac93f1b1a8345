#include "ov_sql_executor/execution/stack_guard.hpp"

#include "ov_sql_executor/support/thread_stack.hpp"

namespace ov::sql_executor {

namespace {

class stack_guard_enumerator final : public row_source {
 public:
  stack_guard_enumerator(std::size_t stack_need, input_rows child)
      : stack_need_(stack_need), child_(std::move(child)) {}

  bool push_next(execution_context& context) override {
    require_stack(stack_need_);
    return child_.push_next(context);
  }

  void restart(execution_context& context, opening how) override {
    require_stack(stack_need_);
    child_.start(context, how);
  }

  std::optional<row> next(execution_context& context) override {
    require_stack(stack_need_);
    return child_.next(context);
  }

 private:
  std::size_t stack_need_;
  input_rows child_;
};

}  // namespace

std::unique_ptr<row_source> stack_guard::open(execution_context& context, std::uint64_t most_rows) const {
  require_stack(stack_need_);
  return std::make_unique<stack_guard_enumerator>(stack_need_, child_.open(context, most_rows));
}

}  // namespace ov::sql_executor
