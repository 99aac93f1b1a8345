#include "ov_sql_executor/execution/nested_loop_inner_join.hpp"

#include "ov_sql_executor/execution/nested_loop_enumerator.hpp"

namespace ov::sql_executor {

std::unique_ptr<row_source> nested_loop_inner_join::open(execution_context& context,
                                                         std::uint64_t /*most_rows*/) const {
  return std::make_unique<nested_loop_enumerator>(outer_.open(context), inner_, std::nullopt);
}

std::optional<std::size_t> nested_loop_inner_join::row_width() const {
  const std::optional<std::size_t> outer = outer_.row_width();
  const std::optional<std::size_t> inner = inner_.row_width();
  return outer && inner ? std::optional(*outer + *inner) : std::nullopt;
}

}  // namespace ov::sql_executor
