#ifndef OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEPT_SIDE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEPT_SIDE_HPP_

#include <memory>
#include <optional>

#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// A part of an inner side that does not depend on the outer row: its child's rows, which are read once and handed out
// again for the outer rows that follow. See kept_input.
class kept_side final : public source_node {
 public:
  // last_read: see kept_input.
  kept_side(std::unique_ptr<node> child, std::optional<std::size_t> last_read)
      : child_(std::move(child)), last_read_(last_read) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return child_.row_width(); }
  bool keeps_rows() const override { return true; }
  node_description describe() const override { return {"kept_side", {}, {&child_}}; }

 private:
  input child_;
  std::optional<std::size_t> last_read_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEEPING_KEPT_SIDE_HPP_
