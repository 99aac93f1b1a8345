#ifndef OV_SQL_EXECUTOR_EXECUTION_KEEPING_LOOKUP_FILTER_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_KEEPING_LOOKUP_FILTER_HPP_

#include <memory>
#include <optional>

#include "ov_sql_executor/execution/keeping/keyed_condition.hpp"
#include "ov_sql_executor/execution/row_source.hpp"

namespace ov::sql_executor {

// A filter over a part of an inner side that does not depend on the outer row. The child's rows are kept, as by
// kept_side, and hashed by the condition's key: an outer row looks only at the rows that may meet the condition. Rows,
// their order, values and errors are those of a filter that looks at all of them.
class lookup_filter final : public source_node {
 public:
  // last_read: see kept_input; what the key reads counts, too.
  lookup_filter(std::unique_ptr<node> child, keyed_condition condition, std::optional<std::size_t> last_read)
      : child_(std::move(child)), condition_(std::move(condition)), last_read_(last_read) {}

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override { return child_.row_width(); }
  bool keeps_rows() const override { return true; }
  node_description describe() const override { return {"lookup_filter", {}, {&child_}}; }

 private:
  input child_;
  keyed_condition condition_;
  std::optional<std::size_t> last_read_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_KEEPING_LOOKUP_FILTER_HPP_
