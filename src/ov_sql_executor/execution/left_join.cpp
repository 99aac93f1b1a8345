#include "ov_sql_executor/execution/left_join.hpp"

#include "ov_sql_executor/execution/nested_loop_enumerator.hpp"

namespace ov::sql_executor {

std::unique_ptr<row_source> left_join::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  return std::make_unique<nested_loop_enumerator>(left_.open(context), right_, right_width_);
}

std::optional<std::size_t> left_join::row_width() const {
  const std::optional<std::size_t> left = left_.row_width();
  return left ? std::optional(*left + right_width_) : std::nullopt;
}

}  // namespace ov::sql_executor
