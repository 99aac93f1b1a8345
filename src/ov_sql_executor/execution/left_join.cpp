#include "ov_sql_executor/execution/left_join.hpp"

#include "ov_sql_executor/execution/nested_loop_enumerator.hpp"

namespace ov::sql_executor {

std::unique_ptr<row_source> left_join::open(execution_context& context) const {
  return std::make_unique<nested_loop_enumerator>(left_.open(context), right_, right_width_);
}

}  // namespace ov::sql_executor
