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

// A result column of object references: the name of the table or class they belong to, one UTF-16 unit per character.
// Empty where it has none.
struct RefInfo {
  std::wstring name;
};

// The type of a result column, as the plan states it: the alternative that the item names, the T of its
// property_column<T> or computed<T>. Values of another type are passed on as they are. Alternatives 0 to 8 are those of
// value. Columns of set specifiers and of NullValue are refused. References are RefInfo:
//
//    a variable                     the name of its table
//    a property                     the name of the table that it refers to
//    computed<OV_OBJ_REF>           the type of its definition, which is looked for in the Extensions first, then in
//                                   groupings, aggregates and GenerativeAssignments. An operation has its result type;
//                                   a reference that it yields has no name
using column_type =
    std::variant<meta_support::TypeIdentity<bool>, meta_support::TypeIdentity<db_string::tt_string>,
                 meta_support::TypeIdentity<std::uint64_t>, meta_support::TypeIdentity<std::int64_t>,
                 meta_support::TypeIdentity<operator_library::Decimal>, meta_support::TypeIdentity<double>,
                 meta_support::TypeIdentity<float>, meta_support::TypeIdentity<operator_library::Binary>,
                 meta_support::TypeIdentity<OV_OBJ_REF>, RefInfo>;

// Turns a physical plan into a runnable and tells the type of every result column. Reads metadata on the calling
// thread's metadata-layer context and executes nothing. Destroys the plan before it returns or throws. The root must be
// a projection; any other is refused.
//
// Depth: the calling thread's stack limits how deep a plan may be nested. Every node and every operation on the way
// from the root to a leaf counts for 1 KiB of what is left of the stack, less a reserve of 32 KiB. A stack of 8 MiB
// takes about 8,000 levels, one of 256 KiB about 200. (Builds for the address sanitizer: 4.5 KiB for a node, 3.5 for an
// operation, 64 in reserve; without optimisation more.) ANDs inside ANDs and ORs inside ORs are one level, however they
// are bracketed, and so is everything in a list. A plan that is too deep is refused before anything else is looked at.
// A plan that needs up to 32 KiB is not checked.
//
// Threads: a runnable that was planned on one thread may be run on another. Where its stack is too small,
// create_enumerator and next throw the same error. Plans, runnables and enumerators of the library may be destroyed on
// any thread that may use them; only an enumerator needs stack for its depth then.
//
// Throws
//   error_handling::OVException  7022 for what is not supported, an input that is a null pointer, and what is nested
//                                too deeply; 7007 for a projection item that is not a column, and for a column that is
//                                not in scope
//   db_util::db_exception        a status of the core, met while metadata were read: 4101 of the included core where
//                                the thread has no metadata-layer context, 4105 for a reference with a wrong tag, 4272
//                                for metadata without a number or a flag that has to be there
//   boost::numeric::positive_overflow
//                                more than 32768 literals, parameters or columns in scope; a host without Boost
//                                catches std::bad_cast
//   std::out_of_range            an operation or aggregate without the operands it needs; a table whose members are
//                                not numbered from 0 on
//   std::bad_variant_access      a valueless variant anywhere in the plan
OV_SQL_EXECUTOR_API std::tuple<ov::sql_executor::runnable, std::vector<column_type>> Plan(
    physical_queryplan::QueryPlan::PredicateVariant plan);

}  // namespace physical_to_exec

#endif  // OV_SQL_EXECUTOR_PLANNING_PLAN_HPP_
