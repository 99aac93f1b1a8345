#ifndef OV_SQL_EXECUTOR_EXECUTION_EXTENSION_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_EXTENSION_HPP_

#include <memory>
#include <vector>

#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor {

// Appends the values of its expressions to each row of its child, which stays where it is on the row stack: a
// projection that begins with all columns of its child, in order.
class extension final : public source_node {
 public:
  extension(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> expressions);

  std::unique_ptr<row_source> open(execution_context& context, std::uint64_t most_rows) const override;
  std::optional<std::size_t> row_width() const override;

 private:
  input child_;
  std::vector<operators::operand> expressions_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_EXTENSION_HPP_
