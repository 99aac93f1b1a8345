// Exits with 0 if a plan whose root is not a projection is refused with the error that hosts are promised.
#include <cstring>
#include <iostream>
#include <memory>
#include <utility>

#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ov_sql_executor/planning/plan.hpp"

namespace qp = physical_queryplan;

bool refused(qp::QueryPlan::PredicateVariant plan) {
  try {
    physical_to_exec::Plan(std::move(plan));
  } catch (const std::exception& error) {
    const auto* refusal = dynamic_cast<const error_handling::OVException*>(&error);
    return refusal != nullptr && refusal->code == 7022 && refusal->message == L"Not implemented error" &&
           std::strcmp(refusal->what(), "Not implemented error") == 0;
  }
  return false;
}

qp::QueryPlan::GenerativeAssignment one_row() { return {qp::literal(true), qp::computed<bool>{{1, 0, 0, 0}}}; }

int main() {
  auto child = std::make_unique<qp::QueryPlan::PredicateVariant>(one_row());
  const bool filter = refused(qp::QueryPlan::Filter{qp::literal(true), std::move(child)});
  const bool source = refused(one_row());
  std::cout << "filter refused: " << filter << ", source refused: " << source << '\n';
  return filter && source ? 0 : 1;
}
