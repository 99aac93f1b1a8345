#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_CHAIN_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_CHAIN_HPP_

#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/expressions/expression.hpp"

namespace ov::sql_executor {

// Calls visit with the operands of nested ANDs or ORs, in the order of their evaluation. Long chains are common, and
// brackets in them mean nothing. Throws std::out_of_range where one has fewer than two operands, when it comes to that.
template <class Operation, class Visit>
void visit_chain(const Operation& chain, Visit visit) {
  std::vector<std::pair<const Operation*, std::size_t>> pending = {{&chain, 0}};  // and the next operand
  while (!pending.empty()) {
    auto& [inner, next] = pending.back();
    if (next == 2) {
      pending.pop_back();
    } else {
      const physical_queryplan::expression& each = error_handling::element_at(inner->operands, next++);
      if (const auto* const same = std::get_if<Operation>(&each)) {
        pending.emplace_back(same, 0);
      } else {
        visit(each);
      }
    }
  }
}

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_CHAIN_HPP_
