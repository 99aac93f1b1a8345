#ifndef OV_SQL_EXECUTOR_EXECUTION_LEFT_JOIN_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_LEFT_JOIN_HPP_

#include <cstdint>
#include <memory>

#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// As the inner join; a left row for which the right side yields nothing appears once, extended with NULLs.
class left_join final : public source_node {
 public:
  left_join(std::unique_ptr<node> left, std::unique_ptr<node> right, std::uint64_t right_width)
      : left_(std::move(left)), right_(std::move(right)), right_width_(right_width) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return add_widths(left_.row_width(), right_.row_width()); }
  bool keeps_rows() const override { return left_.keeps_rows() || right_.keeps_rows(); }
  node_description describe() const override { return {"left_join", {}, {&left_, &right_}}; }

 private:
  input left_;
  input right_;
  std::uint64_t right_width_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_LEFT_JOIN_HPP_
