#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_OPERATOR_BASE_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_OPERATOR_BASE_HPP_

#include "ov_sql_executor/errors/export.hpp"
#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor::operators {

// One scalar expression. Owns its operands and never changes once built. A tree is evaluated any number of times, from
// several threads with a context each.
//
// A plan states expressions, and nothing that is installed puts an operator of the host into a tree. The class crosses
// the library's boundary for code that builds nodes from the library's sources.
class OV_SQL_EXECUTOR_API operator_base {
 public:
  // Returns the value for the rows in scope; SQL NULL is a NullValue. Keeps no reference to the context. Throws
  // db_util::db_exception for type and core errors and std::bad_variant_access where an alternative is required.
  virtual value evaluate(execution_context& context) const = 0;

  virtual ~operator_base() = default;

  operator_base(const operator_base&) = delete;
  operator_base& operator=(const operator_base&) = delete;

 protected:
  operator_base() = default;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_OPERATOR_BASE_HPP_
