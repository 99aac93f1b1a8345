#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_VIEWS_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_VIEWS_HPP_

#include <span>
#include <vector>

#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor::operators {

// Shows the values of several expressions at once, row after row, without making values of them. Copies what the core
// lends for one before it evaluates the next, into memory that serves for all rows.
class operand_views {
 public:
  explicit operand_views(std::size_t count) : scratch_(count), views_(count) {}

  // Evaluates the operands in order. Requires: there are as many of them as the count. Valid until: the next call, the
  // next core call on the context, or a change of the context's lists.
  std::span<const value_view> evaluate(std::span<const operand> operands, execution_context& context);

 private:
  std::vector<scratch_space> scratch_;
  std::vector<value_view> views_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_VIEWS_HPP_
