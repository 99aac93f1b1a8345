#ifndef OV_SQL_EXECUTOR_EXECUTION_ENUMERATOR_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_ENUMERATOR_HPP_

#include <optional>

#include "ov_sql_executor/errors/export.hpp"
#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

// One run of a node: hands out its rows one at a time. Owns the enumerators below it and what they opened in the core;
// refers into its node, which must outlive it. Destructors do not throw.
class OV_SQL_EXECUTOR_API enumerator {
 public:
  // The next row, owned by the caller, or nothing at the end and on every later call. The context is that of the whole
  // run; its row stack is as long afterwards as before. After an exception the enumerator and the context are
  // discarded.
  virtual std::optional<row> next(execution_context& context) = 0;

  virtual ~enumerator() = default;

  enumerator(const enumerator&) = delete;
  enumerator& operator=(const enumerator&) = delete;

 protected:
  enumerator() = default;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_ENUMERATOR_HPP_
