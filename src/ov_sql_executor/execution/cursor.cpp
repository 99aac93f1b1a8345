#include "ov_sql_executor/execution/cursor.hpp"

#include "ov_sql_executor/execution/row_source.hpp"
#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

cursor::cursor(const runnable& statement, execution_context& context)
    : context_(context), start_(context.row_stack.size()), rows_(open_rows(*statement.root, context)) {}

cursor::~cursor() {
  rows_.reset();
  cut_row_stack(context_, start_);
}

bool cursor::next() {
  cut_row_stack(context_, start_);
  return rows_->push_next(context_);
}

}  // namespace ov::sql_executor
