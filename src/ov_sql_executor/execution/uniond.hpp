#ifndef OV_SQL_EXECUTOR_EXECUTION_UNIOND_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_UNIOND_HPP_

#include <memory>

#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// All rows of the left input, then all rows of the right one. Both are opened at the start.
class uniond final : public source_node {
 public:
  uniond(std::unique_ptr<node> left, std::unique_ptr<node> right) : left_(std::move(left)), right_(std::move(right)) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override {
    return left_.row_width() == right_.row_width() ? left_.row_width() : std::nullopt;
  }
  bool keeps_rows() const override { return left_.keeps_rows() || right_.keeps_rows(); }
  node_description describe() const override { return {"uniond", {}, {&left_, &right_}}; }

 private:
  input left_;
  input right_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_UNIOND_HPP_
