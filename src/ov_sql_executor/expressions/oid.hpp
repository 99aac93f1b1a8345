#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_OID_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_OID_HPP_

#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// Returns the object number of a reference, as uint64, and NULL for NULL. Throws db_exception type_error for anything
// else.
class oid final : public lending_operator {
 public:
  explicit oid(std::unique_ptr<operator_base> reference) : operand_(std::move(reference)) {}

  value_view lend(execution_context& context, value& scratch) const override;

 private:
  operand operand_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_OID_HPP_
