#ifndef OV_SQL_EXECUTOR_EXECUTION_FULL_JOIN_ENUMERATOR_NO_EXPRESSION_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_FULL_JOIN_ENUMERATOR_NO_EXPRESSION_HPP_

#include <cstdint>
#include <memory>
#include <optional>

#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// A full join without a condition: every pair, or, where one side is empty, the rows of the other extended with NULLs.
// Neither side sees the other's row: while the right side is asked, nothing of the left lies on the stack; it is put
// below the right row afterwards.
class full_join_enumerator_no_expression final : public row_source {
 public:
  full_join_enumerator_no_expression(input_rows left, input_rows right, std::uint64_t left_width,
                                     std::uint64_t right_width)
      : left_width_(left_width), right_width_(right_width), left_(std::move(left)), right_(std::move(right)) {}

  bool push_next(execution_context& context) override;
  void restart(execution_context& context, opening how) override;

 private:
  void start(execution_context& context);
  bool push_right_row(execution_context& context);
  bool push_pair(execution_context& context);

  std::uint64_t left_width_;
  std::uint64_t right_width_;
  bool started_ = false;
  input_rows left_;   // closed when the left side is empty
  input_rows right_;  // closed when the right side is empty
  std::optional<row> left_row_;
  std::optional<row> pending_right_row_;  // read to see whether there is one
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_FULL_JOIN_ENUMERATOR_NO_EXPRESSION_HPP_
