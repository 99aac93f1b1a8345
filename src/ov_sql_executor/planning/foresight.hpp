#ifndef OV_SQL_EXECUTOR_PLANNING_FORESIGHT_HPP_
#define OV_SQL_EXECUTOR_PLANNING_FORESIGHT_HPP_

#include <algorithm>
#include <vector>

#include "ov_sql_executor/expressions/expression.hpp"
#include "ov_sql_executor/expressions/scope.hpp"

namespace physical_to_exec {

// The variables that something else than a scan gives a value: they may hold references to nothing.
using variable_list = std::vector<physical_queryplan::variable>;

// Tells what cannot raise, whatever the rows hold, and however often or seldom it is evaluated.
//
//    expression                                                why it cannot raise
//    a column of a row in scope, a literal but a reference     it lies in memory
//    a property of an object that a scan found                 the object is there
//    a test for NULL of these
//    a comparison of literals and properties of one family
//    AND, OR, NOT, XOR of such tests
class foresight {
 public:
  // computed: of those in scope, at least. Both must outlive this.
  foresight(const ov::sql_executor::visible_columns& columns, const variable_list& computed)
      : columns_(columns), computed_(computed) {}

  // Of operands, and of conditions; false where it cannot tell. Require that the expression has been translated.
  bool knows_value(const physical_queryplan::expression& any) const;
  bool knows_test(const physical_queryplan::expression& condition) const;

 private:
  class outlook;

  const ov::sql_executor::visible_columns& columns_;
  const variable_list& computed_;
};

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_FORESIGHT_HPP_
