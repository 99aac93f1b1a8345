#ifndef OV_SQL_EXECUTOR_EXECUTION_PROJECTED_ITEM_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_PROJECTED_ITEM_HPP_

#include <memory>
#include <vector>

#include "ov_sql_executor/execution/rows/row_stack.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// One item of a projection. Where the input row goes away, a value of it that no later item looks at is moved.
class projected_item {
 public:
  explicit projected_item(std::unique_ptr<operators::operator_base> expression) : expression_(std::move(expression)) {}

  // Appends the item's value. The input row lies on the row stack from input_start on.
  void append_to(std::vector<value>& list, std::size_t input_start, execution_context& context) const {
    if (is_last_look_ && position_ >= input_start && position_ < context.row_stack.size()) {
      append_moved(list, context.row_stack[position_]);
    } else {
      expression_.append_to(list, context);
    }
  }

  // Appends the item's value, while the input row stays.
  void append_copy_to(std::vector<value>& list, execution_context& context) const {
    expression_.append_to(list, context);
  }

  static std::vector<projected_item> make(std::vector<std::unique_ptr<operators::operator_base>> expressions);

 private:
  operators::operand expression_;
  std::size_t position_ = 0;
  bool is_last_look_ = false;  // the item is the value at that position, and nothing looks at it afterwards
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_PROJECTED_ITEM_HPP_
