#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_LOGICAL_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_LOGICAL_HPP_

#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// The operators of three-valued logic. Everything that is neither a bool nor NULL is a db_exception type_error where it
// is looked at.

// AND and OR. Decisive is the truth value that one side needs to decide the whole. The left operand is evaluated first;
// when it decides, the right one is not evaluated; when it is the other truth value, the result is the right one's
// value, whatever it is. Beside a NULL the right operand must be a bool or NULL, and still decides.
template <bool Decisive>
class connective final : public lending_operator {
 public:
  connective(std::unique_ptr<operator_base> left, std::unique_ptr<operator_base> right)
      : left_(std::move(left)), right_(std::move(right)) {}

  value_view lend(execution_context& context, value& room) const override;
  truth test(execution_context& context) const override;

 private:
  operand left_;
  operand right_;
};

using logical_and = connective<false>;
using logical_or = connective<true>;

class logical_not final : public truth_operator {
 public:
  explicit logical_not(std::unique_ptr<operator_base> truth) : operand_(std::move(truth)) {}

  truth test(execution_context& context) const override;

 private:
  operand operand_;
};

// Whether exactly one side is true. The left operand is evaluated first; when it is NULL, so is the result, without
// evaluating the right one.
class xor_op final : public truth_operator {
 public:
  xor_op(std::unique_ptr<operator_base> left, std::unique_ptr<operator_base> right)
      : left_(std::move(left)), right_(std::move(right)) {}

  truth test(execution_context& context) const override;

 private:
  operand left_;
  operand right_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_LOGICAL_HPP_
