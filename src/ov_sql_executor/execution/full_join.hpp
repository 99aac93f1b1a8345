#ifndef OV_SQL_EXECUTOR_EXECUTION_FULL_JOIN_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_FULL_JOIN_HPP_

#include <cstdint>
#include <memory>
#include <optional>

#include "ov_sql_executor/execution/keeping/keyed_condition.hpp"
#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// The pairs of left and right rows for which the condition holds, in left order, then in right order; a left row
// without a partner follows at its place, extended with NULLs, the right rows without one at the very end. Neither side
// sees the other. With a condition the whole right side is held in memory; without one every pair matches, and the
// right side is read again for every left row.
class full_join final : public source_node {
 public:
  full_join(std::unique_ptr<node> left, std::unique_ptr<node> right, std::uint64_t left_width,
            std::uint64_t right_width, std::optional<std::unique_ptr<operators::operator_base>> condition);

  // On a condition whose key is of the right rows: they are hashed by it.
  full_join(std::unique_ptr<node> left, std::unique_ptr<node> right, std::uint64_t left_width,
            std::uint64_t right_width, keyed_condition condition)
      : left_(std::move(left)),
        right_(std::move(right)),
        left_width_(left_width),
        right_width_(right_width),
        keyed_condition_(std::move(condition)) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return add_widths(left_.row_width(), right_.row_width()); }
  bool keeps_rows() const override { return left_.keeps_rows() || right_.keeps_rows(); }
  node_description describe() const override {
    return {"full_join",
            keyed_condition_ ? "on a hashed condition"
            : condition_     ? "on a condition"
                             : "every pair",
            {&left_, &right_}};
  }

 private:
  std::unique_ptr<row_source> join(input_rows left, input_rows right) const;

  input left_;
  input right_;
  std::uint64_t left_width_;
  std::uint64_t right_width_;
  std::optional<operators::operand> condition_;
  std::optional<keyed_condition> keyed_condition_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_FULL_JOIN_HPP_
