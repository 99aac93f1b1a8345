#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_NULL_TEST_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_NULL_TEST_HPP_

#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// Tells whether a value is NULL (WhenNull true) or is not. Never gives NULL.
template <bool WhenNull>
class null_test final : public truth_operator {
 public:
  explicit null_test(std::unique_ptr<operator_base> any) : operand_(std::move(any)) {}

  truth test(execution_context& context) const override;

 private:
  operand operand_;
};

using is_null = null_test<true>;
using is_not_null = null_test<false>;

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_NULL_TEST_HPP_
