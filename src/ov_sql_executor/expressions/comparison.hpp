#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_COMPARISON_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_COMPARISON_HPP_

#include <compare>
#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// The six comparisons. Give a bool, or NULL where an operand is NULL. Evaluate the right operand first, and the left
// one always. Relation says for which orders of left to right the comparison holds; values/comparison.hpp says what
// compares.
template <class Relation>
class comparison final : public truth_operator {
 public:
  comparison(std::unique_ptr<operator_base> left, std::unique_ptr<operator_base> right)
      : left_(std::move(left)), right_(std::move(right)) {}

  truth test(execution_context& context) const override;

  const operand& left() const { return left_; }
  const operand& right() const { return right_; }

 private:
  operand left_;
  operand right_;
};

// A NaN is unordered: not equal, and neither less nor greater.
struct is_equal {
  static bool holds(std::partial_ordering order) { return order == 0; }
};
struct is_not_equal {
  static bool holds(std::partial_ordering order) { return order != 0; }
};
struct is_less {
  static bool holds(std::partial_ordering order) { return order < 0; }
};
struct is_less_or_equal {
  static bool holds(std::partial_ordering order) { return order <= 0; }
};
struct is_greater {
  static bool holds(std::partial_ordering order) { return order > 0; }
};
struct is_greater_or_equal {
  static bool holds(std::partial_ordering order) { return order >= 0; }
};

using equal = comparison<is_equal>;
using not_equal = comparison<is_not_equal>;
using less_than = comparison<is_less>;
using less_than_or_equal = comparison<is_less_or_equal>;
using greater_than = comparison<is_greater>;
using greater_than_or_equal = comparison<is_greater_or_equal>;

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_COMPARISON_HPP_
