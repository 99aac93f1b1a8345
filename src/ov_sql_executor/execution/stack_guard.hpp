#ifndef OV_SQL_EXECUTOR_EXECUTION_STACK_GUARD_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_STACK_GUARD_HPP_

#include <cstddef>

#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// Its child, a deeply nested tree: each time when it is called from outside, also for a row, the calling thread's stack
// must have room for it. Throws OVException 7022 where it has not.
class stack_guard final : public source_node {
 public:
  stack_guard(std::unique_ptr<node> child, std::size_t stack_need)
      : child_(std::move(child)), stack_need_(stack_need) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return child_.row_width(); }
  bool keeps_rows() const override { return child_.keeps_rows(); }
  node_description describe() const override {
    return {"stack_guard", std::to_string(stack_need_) + " bytes of stack", {&child_}};
  }

 private:
  input child_;
  std::size_t stack_need_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_STACK_GUARD_HPP_
