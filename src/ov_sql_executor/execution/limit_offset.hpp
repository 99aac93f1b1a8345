#ifndef OV_SQL_EXECUTOR_EXECUTION_LIMIT_OFFSET_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_LIMIT_OFFSET_HPP_

#include <memory>

#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// Leaves out the child's first offset rows and passes at most limit of the others. Both are evaluated once, against the
// enclosing rows, before the child is opened; the offset is skipped there and then. Throws db_exception type_error for
// NULL, and what the conversion to uint64 throws.
class limit_offset final : public source_node {
 public:
  limit_offset(std::unique_ptr<node> child, std::unique_ptr<operators::operator_base> limit,
               std::unique_ptr<operators::operator_base> offset)
      : child_(std::move(child)), limit_(std::move(limit)), offset_(std::move(offset)) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return child_.row_width(); }
  bool keeps_rows() const override { return child_.keeps_rows(); }
  node_description describe() const override { return {"limit_offset", {}, {&child_}}; }

  // The numbers of rows, for the rows that are in scope.
  struct counts {
    std::uint64_t limit;
    std::uint64_t offset;
  };
  counts count_rows(execution_context& context) const;

 private:
  input child_;
  operators::operand limit_;
  operators::operand offset_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_LIMIT_OFFSET_HPP_
