#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_LENDING_OPERATOR_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_LENDING_OPERATOR_HPP_

#include "ov_sql_executor/expressions/operator_base.hpp"
#include "ov_sql_executor/expressions/truth.hpp"
#include "ov_sql_executor/support/destroyed_in_turn.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor::operators {

// An operator of this library. Besides evaluating, it can lend: show its value where it lies, instead of making a copy
// that a caller who only looks at it would throw away. Both have the same result, errors and order of evaluation.
class lending_operator : public destroyed_in_turn<operator_base> {
 public:
  // Shows the value: in the view itself, in the context, in a buffer of the core, or in scratch, which the operator may
  // overwrite. Valid until: the next core call on the context, or a change of the context's lists or of scratch.
  virtual value_view lend(execution_context& context, value& scratch) const = 0;

  // Evaluates a condition. Throws db_exception type_error where it is neither a bool nor NULL.
  virtual truth test(execution_context& context) const {
    value scratch;
    return to_truth(lend(context, scratch));
  }

  value evaluate(execution_context& context) const override {
    value scratch;
    return to_value(lend(context, scratch));
  }
};

// An operator whose value is a truth value.
class truth_operator : public lending_operator {
 public:
  truth test(execution_context& context) const override = 0;

  value_view lend(execution_context& context, value& /*scratch*/) const final { return view_of_truth(test(context)); }
};

// An operator that makes a value of its own each time.
class making_operator : public lending_operator {
 public:
  value evaluate(execution_context& context) const override = 0;

  value_view lend(execution_context& context, value& scratch) const final {
    scratch = evaluate(context);
    return view_of(scratch);
  }
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_LENDING_OPERATOR_HPP_
