// A host with a core of its own: it defines the calls of the C interface that its statements need, and they win over
// those of the embedded core. Exits with 0 if the library asks this core.
#include <cstdint>
#include <iostream>
#include <memory>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/planning/plan.hpp"
#include "ovcoredb/ovcoredb.h"
#include "ovdbmetalayer/metalayer.hpp"

namespace qp = physical_queryplan;

extern "C" std::uint32_t orv_context_lookup(std::uint64_t context, std::uint64_t object, std::uint64_t* second_word) {
  if (object != 7) return 5555;
  *second_word = context;
  return 0;
}

OV_OBJ_REF select_reference(std::uint64_t object, std::uint64_t core_context) {
  const qp::computed<OV_OBJ_REF> column{{1, 0, 0, 0}};
  auto source = std::make_unique<qp::QueryPlan::PredicateVariant>(
      qp::QueryPlan::GenerativeAssignment{qp::literal(OV_OBJ_REF{object, 0}), column});
  auto [statement, columns] = physical_to_exec::Plan(qp::QueryPlan::Projection{{column}, std::move(source)});
  ov::sql_executor::execution_context context{statement.constants, {}, {}, core_context};
  const std::unique_ptr<ov::sql_executor::enumerator> rows(statement.root->create_enumerator(context));
  return std::get<OV_OBJ_REF>(rows->next(context).value().front());
}

std::uint32_t status_of_unknown_object() {
  try {
    select_reference(8, 0);
  } catch (const db_util::db_exception& error) {
    return error.code;
  }
  return 0;
}

int main() {
  metalayer::TlsMetalayerContext::Current() = 3;
  const std::uint64_t second_word = select_reference(7, 77).second_word;
  const std::uint32_t status = status_of_unknown_object();
  std::cout << "second word " << second_word << ", status " << status << '\n';
  return second_word == 77 && status == 5555 ? 0 : 1;
}
