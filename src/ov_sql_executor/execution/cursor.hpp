#ifndef OV_SQL_EXECUTOR_EXECUTION_CURSOR_HPP_
#define OV_SQL_EXECUTOR_EXECUTION_CURSOR_HPP_

#include <cstddef>
#include <memory>
#include <span>

#include "ov_sql_executor/errors/export.hpp"
#include "ov_sql_executor/execution/runnable.hpp"
#include "ov_sql_executor/expressions/execution_context.hpp"
#include "ov_sql_executor/values/value.hpp"

namespace ov::sql_executor {

class row_source;

// One run of a statement whose rows are looked at where they lie, on the context's row stack, so that none is
// allocated:
//
//   execution_context context{statement.constants, parameters, {}, core_context_handle};
//   cursor rows(statement, context);
//   while (rows.next()) use(rows.row());
//
// It yields what an enumerator of statement.root yields. While it lives, the context serves nothing else.
class OV_SQL_EXECUTOR_API cursor {
 public:
  // Opens the run. The statement and the context must outlive it. Throws what node::create_enumerator throws.
  cursor(const runnable& statement, execution_context& context);

  // Leaves the row stack as long as the constructor found it, also in the middle of a run or after an exception.
  ~cursor();

  cursor(const cursor&) = delete;
  cursor& operator=(const cursor&) = delete;

  // Goes to the next row; false at the end and on every later call. Throws what enumerator::next throws; then the
  // cursor and the context are discarded.
  bool next();

  // The row's values, in the order of the result columns; none before the first row and behind the last. Valid until
  // the next call of next, or the cursor's end.
  std::span<const value> row() const { return std::span<const value>(context_.row_stack).subspan(start_); }

 private:
  execution_context& context_;
  std::size_t start_;  // of the row on the row stack
  std::unique_ptr<row_source> rows_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXECUTION_CURSOR_HPP_
