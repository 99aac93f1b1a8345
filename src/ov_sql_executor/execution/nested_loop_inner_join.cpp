#include "ov_sql_executor/execution/nested_loop_inner_join.hpp"

#include "ov_sql_executor/execution/nested_loop_enumerator.hpp"

namespace ov::sql_executor {

namespace {

class nlij_enumerator final : public nested_loop_enumerator {
 public:
  nlij_enumerator(input_rows outer, const input& inner_side)
      : nested_loop_enumerator(std::move(outer), inner_side, std::nullopt) {}
};

}  // namespace

std::unique_ptr<row_source> nested_loop_inner_join::open(execution_context& context,
                                                         std::uint64_t /*most_rows*/) const {
  return std::make_unique<nlij_enumerator>(outer_.open(context), inner_);
}

}  // namespace ov::sql_executor
