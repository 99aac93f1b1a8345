#include "ov_sql_executor/execution/nested_loop_inner_join.hpp"

#include "ov_sql_executor/execution/nested_loop_enumerator.hpp"

namespace ov::sql_executor {

std::unique_ptr<row_source> nested_loop_inner_join::open(execution_context& context) const {
  return std::make_unique<nested_loop_enumerator>(outer_.open(context), inner_, std::nullopt);
}

}  // namespace ov::sql_executor
