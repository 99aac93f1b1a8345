#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_LENDING_OPERATOR_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_LENDING_OPERATOR_HPP_

#include "ov_sql_executor/expressions/operator_base.hpp"
#include "ov_sql_executor/expressions/truth.hpp"
#include "ov_sql_executor/support/destroyed_in_turn.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor::operators {

// The operators of this library. Beside evaluate they can lend: show their value where it lies instead of making a copy
// that whoever only looks at it would throw away. Both have the same result, errors and order of evaluation.
class lending_operator : public destroyed_in_turn<operator_base> {
 public:
  // The value, held in the view itself, lying in the context, in a buffer of the core, or in scratch, which is free for
  // the operator to use. Good until the next core call on the context, and as long as the context's lists and scratch
  // stay.
  virtual value_view lend(execution_context& context, value& scratch) const = 0;

  // The value where only its truth is wanted. Throws db_exception type_error when it is neither a bool nor NULL.
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
