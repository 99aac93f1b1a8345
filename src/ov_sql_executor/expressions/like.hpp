#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_LIKE_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_LIKE_HPP_

#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"

namespace ov::sql_executor::operators {

// Tells whether a text matches a LIKE pattern (values/like_pattern.hpp), both in the core's base form. Evaluates the
// pattern first. Where that is NULL, gives NULL and does not evaluate the text. Gives NULL for a NULL text, without a
// look into the pattern. Throws db_exception type_error for operands that are no texts, and OVException bad_escape.
class like final : public truth_operator {
 public:
  like(std::unique_ptr<operator_base> text, std::unique_ptr<operator_base> pattern)
      : left_(std::move(text)), right_(std::move(pattern)) {}

  truth test(execution_context& context) const override;

 private:
  operand left_;
  operand right_;
};

// Returns, as a text, what the texts that match a LIKE pattern begin with; see like_prefix. Gives NULL for NULL. Throws
// db_exception type_error for an operand that is no text.
class like_starts_with final : public making_operator {
 public:
  explicit like_starts_with(std::unique_ptr<operator_base> pattern) : operand_(std::move(pattern)) {}

  value evaluate(execution_context& context) const override;

 private:
  operand operand_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_LIKE_HPP_
