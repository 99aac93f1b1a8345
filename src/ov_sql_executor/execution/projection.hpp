#ifndef OV_SQL_EXECUTOR_EXECUTION_PROJECTION_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_PROJECTION_HPP_

#include <memory>
#include <vector>

#include "ov_sql_executor/execution/projected_item.hpp"
#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// Turns each row of its child into the values of its expressions, in order; or appends them to the row, which stays
// where it is on the row stack.
class projection final : public source_node {
 public:
  enum class input_row : bool { replaced, extended };

  projection(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> expressions,
             input_row what_happens = input_row::replaced);

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override;
  bool keeps_rows() const override { return child_.keeps_rows(); }
  node_description describe() const override;

 private:
  input child_;
  std::vector<projected_item> items_;
  input_row what_happens_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_PROJECTION_HPP_
