#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_LOGICAL_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_LOGICAL_HPP_

#include <array>
#include <cassert>
#include <concepts>
#include <memory>
#include <utility>
#include <vector>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/expressions/operand_list.hpp"

namespace ov::sql_executor::operators {

// The operators of three-valued logic. Throw db_exception type_error for an operand that they look at and that is
// neither a bool nor NULL.

// AND and OR. Decisive is the truth value that one side needs to decide the whole. Evaluates the left operand first:
//
//    decisive           the right one is not evaluated
//    not decisive       the result is the value of the right one, whatever it is
//    NULL               the right one must be a bool or NULL, and may still decide
//
// Operands is an array of two, or a vector of two or more: the operands of nested connectives of the same kind, however
// they are bracketed. Brackets change neither values nor errors, nor what is evaluated.
template <bool Decisive, class Operands>
class connective final : public lending_operator {
  static constexpr bool is_list = std::same_as<Operands, std::vector<operand>>;

 public:
  // Templates, since only one constructor fits the operands.
  template <std::same_as<std::unique_ptr<operator_base>> Expression>
  connective(Expression left, Expression right) requires(!is_list)
      : operands_{operand(std::move(left)), operand(std::move(right))} {}
  template <std::same_as<std::vector<std::unique_ptr<operator_base>>> List>
  explicit connective(List operands) requires(is_list) : operands_(to_operands(std::move(operands))) {
    assert(operands_.size() >= 2);
  }

  value_view lend(execution_context& context, value& scratch) const override;
  truth test(execution_context& context) const override;

 private:
  Operands operands_;
};

using logical_and = connective<false, std::array<operand, 2>>;
using logical_or = connective<true, std::array<operand, 2>>;
using all_of = connective<false, std::vector<operand>>;
using any_of = connective<true, std::vector<operand>>;

class logical_not final : public truth_operator {
 public:
  explicit logical_not(std::unique_ptr<operator_base> truth) : operand_(std::move(truth)) {}

  truth test(execution_context& context) const override;

 private:
  operand operand_;
};

// Tells whether exactly one side is true. Evaluates the left operand first. Where that is NULL, gives NULL and does not
// evaluate the right one.
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
