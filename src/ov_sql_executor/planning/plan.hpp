#ifndef OV_SQL_EXECUTOR_PLANNING_PLAN_HPP_
#define OV_SQL_EXECUTOR_PLANNING_PLAN_HPP_

#include <cstdint>
#include <string>
#include <tuple>
#include <variant>
#include <vector>

#include "ov_sql_executor/errors/export.hpp"
#include "ov_sql_executor/execution/runnable.hpp"
#include "ov_sql_executor/planning/query_plan.hpp"
#include "ov_sql_executor/values/type_identity.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace physical_to_exec {

// A result column of object references: the name of the table or class they belong to, one UTF-16 unit per character;
// empty where it has none.
struct RefInfo {
  std::wstring name;
};

// The type of a result column. Alternatives 0 to 8 are those of value; reference columns are always RefInfo.
using column_type =
    std::variant<meta_support::TypeIdentity<bool>, meta_support::TypeIdentity<db_string::tt_string>,
                 meta_support::TypeIdentity<std::uint64_t>, meta_support::TypeIdentity<std::int64_t>,
                 meta_support::TypeIdentity<operator_library::Decimal>, meta_support::TypeIdentity<double>,
                 meta_support::TypeIdentity<float>, meta_support::TypeIdentity<operator_library::Binary>,
                 meta_support::TypeIdentity<OV_OBJ_REF>, RefInfo>;

// Turns a physical plan into a runnable and tells the type of every result column. The root must be a projection. Reads
// metadata on the calling thread's metadata-layer context and executes nothing. The plan is destroyed before the call
// returns or throws.
//
// Throws
//   error_handling::OVException  7022 for what is not supported, 7007 for a projection item that is not a column
//   db_util::db_exception        a status of the core, met while metadata were read
//   boost::numeric::positive_overflow  more than 32768 literals, parameters or columns in scope
//   std::out_of_range            an operation or aggregate without the operands it needs
//   std::bad_variant_access      a valueless variant anywhere in the plan
OV_SQL_EXECUTOR_API std::tuple<ov::sql_executor::runnable, std::vector<column_type>> Plan(
    physical_queryplan::QueryPlan::PredicateVariant plan);

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_PLAN_HPP_
