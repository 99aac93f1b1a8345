// SELECT 40 < ?, run with the parameter 42.
#include <cstdint>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ov_sql_executor/planning/plan.hpp"

namespace qp = physical_queryplan;

qp::QueryPlan::PredicateVariant build_plan() {
  // The operands: a literal, and the statement's parameter number 0. The tag says what the comparison yields.
  qp::Less less;
  less.result_type = meta_support::TypeIdentity<bool>{};
  less.operands = {qp::literal(std::int64_t{40}), qp::literal(qp::parameter<std::int64_t>{0})};

  // Columns that the plan computes are named by four words of the host's choice.
  const qp::computed<bool> answer{{1, 0, 0, 0}};

  // One row of one value, below the projection that every plan has at its root.
  auto source =
      std::make_unique<qp::QueryPlan::PredicateVariant>(qp::QueryPlan::GenerativeAssignment{std::move(less), answer});
  return qp::QueryPlan::Projection{{answer}, std::move(source)};
}

int main() try {
  // A statement is planned once and run as often as wanted; columns tells the type of every value of its rows.
  auto [statement, columns] = physical_to_exec::Plan(build_plan());
  std::cout << columns.size()
            << " column, bool: " << std::holds_alternative<meta_support::TypeIdentity<bool>>(columns[0]) << '\n';

  // One run: the literals, the parameters, an empty row stack, and the core's context to read through.
  const std::uint64_t core_context = 0;  // this statement reads nothing
  ov::sql_executor::execution_context context{statement.constants, {std::int64_t{42}}, {}, core_context};
  const std::unique_ptr<ov::sql_executor::enumerator> rows(statement.root->create_enumerator(context));
  while (const std::optional<ov::sql_executor::row> row = rows->next(context)) {
    std::cout << std::boolalpha << std::get<bool>((*row)[0]) << '\n';
  }
  return 0;
} catch (const error_handling::OVException& error) {  // the plan was refused, or a LIKE pattern
  std::cerr << "error " << error.code << ": " << error.what() << '\n';
  return 1;
} catch (const db_util::db_exception& error) {  // a value did not fit its use, or the core reported a failure
  std::cerr << "error " << error.code << '\n';
  return 1;
} catch (const std::exception& error) {  // no memory, or one of the rarer errors that the headers list
  std::cerr << error.what() << '\n';
  return 1;
}
