#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_CHAIN_OPERANDS_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_CHAIN_OPERANDS_HPP_

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "ov_sql_executor/expressions/expression.hpp"
#include "ov_sql_executor/expressions/operator_base.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor::operators {

// Which operand of a comparison (0, 1) a list may have as a member, if one may: a literal on either side, or a
// parameter on the right, where it is evaluated first. A literal reference is none, since evaluating it calls the core.
std::optional<std::size_t> find_member(const physical_queryplan::operation& comparison);

// Collects the operands of a chain of ORs or ANDs while it is translated. Comparing is the comparison that makes lists
// in it: equal in ORs, not_equal in ANDs. A run of enough such tests of the same expression becomes an in_list.
template <class Comparing>
class chain_operands {
 public:
  using operator_ptr = std::unique_ptr<operator_base>;

  // constants: the plan's list, which grows while the chain is translated.
  explicit chain_operands(const std::vector<value>& constants) : constants_(constants) {}

  void add(operator_ptr any);

  // A comparison with a member (see find_member), and its two operands translated. Requires that it stays until finish.
  void add_test(const physical_queryplan::operation& comparison, std::size_t member, operator_ptr left,
                operator_ptr right);

  // In order. Nothing may be added any more.
  std::vector<operator_ptr> finish();

 private:
  struct test {
    operator_ptr sides[2];
    std::size_t member;
  };

  void close_run();
  operator_ptr make_list();

  const std::vector<value>& constants_;
  std::vector<operator_ptr> operands_;
  std::vector<test> run_;                                   // tests of one expression, the last operands so far
  const physical_queryplan::expression* tested_ = nullptr;  // in the run
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_CHAIN_OPERANDS_HPP_
