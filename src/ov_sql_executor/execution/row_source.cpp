#include "ov_sql_executor/execution/row_source.hpp"

#include "ov_sql_executor/execution/stack_row.hpp"

namespace ov::sql_executor {

namespace {

// An enumerator that only knows next.
class adapted_source final : public row_source {
 public:
  explicit adapted_source(std::unique_ptr<enumerator> rows) : rows_(std::move(rows)) {}

  bool push_next(execution_context& context) override {
    std::optional<row> next_row = rows_->next(context);
    if (!next_row) return false;
    move_onto_stack(context, *next_row);
    return true;
  }

  std::optional<row> next(execution_context& context) override { return rows_->next(context); }

 private:
  std::unique_ptr<enumerator> rows_;
};

}  // namespace

bool row_source::skip_next(execution_context& context) {
  const std::size_t size = context.row_stack.size();
  if (!push_next(context)) return false;
  cut_row_stack(context, size);
  return true;
}

std::optional<row> row_source::next(execution_context& context) {
  std::optional<row> result;  // made where it is returned
  const std::size_t size = context.row_stack.size();
  if (push_next(context)) move_from_stack(context, size, result.emplace());
  return result;
}

std::unique_ptr<row_source> input::open(execution_context& context) const {
  if (const source_node* own = child_.own()) return own->open(context);
  return std::make_unique<adapted_source>(std::unique_ptr<enumerator>(child_->create_enumerator(context)));
}

std::unique_ptr<row_source> input::open_first(std::uint64_t count, execution_context& context) const {
  if (const source_node* own = child_.own()) return own->open_first(count, context);
  return open(context);
}

void input::reopen(std::unique_ptr<row_source>& used, execution_context& context) const {
  if (const source_node* own = child_.own()) return own->reopen(used, context);
  used = open(context);
}

}  // namespace ov::sql_executor
