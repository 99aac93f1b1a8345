#include "ov_sql_executor/execution/deep_root.hpp"

#include "ov_sql_executor/errors/thread_stack.hpp"

namespace ov::sql_executor {

namespace {

class deep_root_enumerator final : public row_source {
 public:
  deep_root_enumerator(std::size_t stack_need, std::unique_ptr<row_source> child)
      : stack_need_(stack_need), child_(std::move(child)) {}

  bool push_next(execution_context& context) override {
    error_handling::require_stack(stack_need_);
    return child_->push_next(context);
  }

  std::optional<row> next(execution_context& context) override {
    error_handling::require_stack(stack_need_);
    return child_->next(context);
  }

 private:
  std::size_t stack_need_;
  std::unique_ptr<row_source> child_;
};

}  // namespace

std::unique_ptr<row_source> deep_root::open(execution_context& context) const {
  error_handling::require_stack(stack_need_);
  return std::make_unique<deep_root_enumerator>(stack_need_, child_.open(context));
}

}  // namespace ov::sql_executor
