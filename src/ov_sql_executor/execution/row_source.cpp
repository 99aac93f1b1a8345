#include "ov_sql_executor/execution/row_source.hpp"

#include <iterator>

namespace ov::sql_executor {

namespace {

// An enumerator that only knows next.
class adapted_source final : public row_source {
 public:
  explicit adapted_source(std::unique_ptr<enumerator> rows) : rows_(std::move(rows)) {}

  bool push_next(execution_context& context) override {
    std::optional<row> next_row = rows_->next(context);
    if (!next_row) return false;
    context.row_stack.insert(context.row_stack.end(), std::make_move_iterator(next_row->begin()),
                             std::make_move_iterator(next_row->end()));
    return true;
  }

  std::optional<row> next(execution_context& context) override { return rows_->next(context); }

 private:
  std::unique_ptr<enumerator> rows_;
};

}  // namespace

std::optional<row> row_source::next(execution_context& context) {
  const std::size_t size = context.row_stack.size();
  if (!push_next(context)) return std::nullopt;
  const auto start = context.row_stack.begin() + static_cast<std::ptrdiff_t>(size);
  row result(std::make_move_iterator(start), std::make_move_iterator(context.row_stack.end()));
  context.row_stack.erase(start, context.row_stack.end());
  return result;
}

std::unique_ptr<row_source> input::open(execution_context& context) const {
  if (source_ != nullptr) return source_->open(context);
  return std::make_unique<adapted_source>(std::unique_ptr<enumerator>(child_->create_enumerator(context)));
}

void cut_row_stack(execution_context& context, std::size_t size) {
  context.row_stack.erase(context.row_stack.begin() + static_cast<std::ptrdiff_t>(size), context.row_stack.end());
}

}  // namespace ov::sql_executor
