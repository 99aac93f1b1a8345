#ifndef OV_SQL_EXECUTOR_EXECUTION_NESTED_LOOP_INNER_JOIN_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_NESTED_LOOP_INNER_JOIN_HPP_

#include <memory>

#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// Every outer row with every row that the inner side yields for it. The condition lies in the inner side, which sees
// the outer row: in the key bounds of a scan, or in a filter.
class nested_loop_inner_join final : public source_node {
 public:
  nested_loop_inner_join(std::unique_ptr<node> outer, std::unique_ptr<node> inner)
      : outer_(std::move(outer)), inner_(std::move(inner)) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return add_widths(outer_.row_width(), inner_.row_width()); }
  bool keeps_rows() const override { return outer_.keeps_rows() || inner_.keeps_rows(); }
  node_description describe() const override { return {"nested_loop_inner_join", {}, {&outer_, &inner_}}; }

 private:
  input outer_;
  input inner_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_NESTED_LOOP_INNER_JOIN_HPP_
