#ifndef OV_SQL_EXECUTOR_EXECUTION_NODE_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_NODE_HPP_

#include "ov_sql_executor/errors/export.hpp"
#include "ov_sql_executor/execution/enumerator.hpp"
#include "ov_sql_executor/expressions/execution_context.hpp"

namespace ov::sql_executor {

// One step of an executable plan. Owns the nodes and the expressions below it; never changes once planned, so that any
// number of enumerators may be alive at once, on several threads with a context each.
class OV_SQL_EXECUTOR_API node {
 public:
  // A new enumerator, owned by the caller, which must destroy it before the node. May read the database and evaluate
  // expressions against the rows in scope; what is half built when an exception passes is freed. Throws what
  // enumerator::next throws.
  virtual enumerator* create_enumerator(execution_context& context) const = 0;

  virtual ~node() = default;

  node(const node&) = delete;
  node& operator=(const node&) = delete;

 protected:
  node() = default;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_NODE_HPP_
