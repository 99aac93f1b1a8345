#include "ov_sql_executor/execution/full_join.hpp"

#include "ov_sql_executor/execution/full_join_enumerator.hpp"
#include "ov_sql_executor/execution/full_join_enumerator_no_expression.hpp"

namespace ov::sql_executor {

full_join::full_join(std::unique_ptr<node> left, std::unique_ptr<node> right, std::uint64_t left_width,
                     std::uint64_t right_width, std::optional<std::unique_ptr<operators::operator_base>> condition)
    : left_(std::move(left)), right_(std::move(right)), left_width_(left_width), right_width_(right_width) {
  if (condition) condition_.emplace(std::move(*condition));
}

std::unique_ptr<row_source> full_join::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  input_rows left = left_.open(context);
  input_rows right = right_.open(context);
  return join(std::move(left), std::move(right));
}

// Out of line: an enumerator in the making would make the frame of each level larger.
[[gnu::noinline]] std::unique_ptr<row_source> full_join::join(input_rows left, input_rows right) const {
  if (condition_ || keyed_condition_) {
    return std::make_unique<full_join_enumerator>(std::move(left), std::move(right), condition_, keyed_condition_,
                                                  left_width_, right_width_);
  }
  return std::make_unique<full_join_enumerator_no_expression>(std::move(left), std::move(right), left_width_,
                                                              right_width_);
}

}  // namespace ov::sql_executor
