#include "ov_sql_executor/execution/generative_assignment.hpp"

#include <utility>

namespace ov::sql_executor {

namespace {

class generative_assignment_enumerator final : public row_source {
 public:
  explicit generative_assignment_enumerator(const operators::operand& expression) : expression_(expression) {}

  bool push_next(execution_context& context) override {
    if (std::exchange(done_, true)) return false;
    expression_.append_to(context.row_stack, context);
    return true;
  }

  void restart(execution_context& /*context*/, opening /*how*/) override { done_ = false; }

 private:
  bool done_ = false;
  const operators::operand& expression_;  // the node's
};

}  // namespace

std::unique_ptr<row_source> generative_assignment::open(execution_context& /*context*/,
                                                        std::uint64_t /*most_rows*/) const {
  return std::make_unique<generative_assignment_enumerator>(expression_);
}

}  // namespace ov::sql_executor
