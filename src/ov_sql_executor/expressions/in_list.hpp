#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_IN_LIST_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_IN_LIST_HPP_

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"
#include "ov_sql_executor/values/equality_set.hpp"
#include "ov_sql_executor/values/value_family.hpp"
#include "ov_sql_executor/values/value_view.hpp"

namespace ov::sql_executor::operators {

// The members of a list in the order of the comparisons, each a literal or a parameter.
using list_members = std::vector<std::unique_ptr<value_from_context>>;

// What chains of comparisons of one operand yield: tested = member OR tested = member ..., which is SQL's IN; and
// tested <> member AND ..., which is NOT IN. Results and errors are the chain's; the operand is evaluated once, after
// the first member.
//
// The literals are in a set that is made with the operator. The parameters, which differ from run to run, are compared
// one by one, and so is everything where it matters which member comes first: where one of them is of another kind than
// the operand, or missing.
class in_list final : public truth_operator {
 public:
  enum class kind : bool { in, not_in };

  // constants: the plan's list so far, with all literals that the members read. Requires a member.
  in_list(kind which, std::unique_ptr<operator_base> tested, list_members members, std::span<const value> constants);

  truth test(execution_context& context) const override;

 private:
  struct literal_set {
    explicit literal_set(std::vector<value_view> views);

    // Whether all compare with values of a family.
    bool compare_with(value_family other) const {
      return other != value_family::none && (family == other || family == value_family::null);
    }

    bool has_null;        // and the others:
    value_family family;  // null where there is none, none where they are of several
    equality_set values;
  };

  // Whether the value is a member. Nothing where the members must be compared in order.
  std::optional<truth> look_up(const value_view& tested, const execution_context& context) const;
  // The same for the parameters alone; unknown beside a NULL. Requires a value of the family.
  std::optional<truth> find_parameter(const value_view& tested, value_family family,
                                      const std::vector<value>& variables) const;
  truth compare_in_order(const value_view& tested, const execution_context& context) const;

  kind kind_;
  operand tested_;
  list_members members_;
  std::vector<std::size_t> parameters_;  // the positions of those among the members
  literal_set literals_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_IN_LIST_HPP_
