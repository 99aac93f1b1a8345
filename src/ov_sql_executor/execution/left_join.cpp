#include "ov_sql_executor/execution/left_join.hpp"

#include "ov_sql_executor/execution/nested_loop_enumerator.hpp"

namespace ov::sql_executor {

namespace {

class left_join_enumerator final : public nested_loop_enumerator {
 public:
  left_join_enumerator(input_rows left, const input& right_side, std::uint64_t right_width)
      : nested_loop_enumerator(std::move(left), right_side, right_width) {}
};

}  // namespace

std::unique_ptr<row_source> left_join::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  return std::make_unique<left_join_enumerator>(left_.open(context), right_, right_width_);
}

}  // namespace ov::sql_executor
