#include "ov_sql_executor/execution/row_source.hpp"

#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

namespace {

// An enumerator of a node that is not of this library, which only knows next.
class adapted_source final : public row_source {
 public:
  adapted_source(const node& of, execution_context& context) : node_(of), rows_(of.create_enumerator(context)) {}

  bool push_next(execution_context& context) override {
    std::optional<row> next_row = rows_->next(context);
    if (!next_row) return false;
    move_onto_stack(context, *next_row);
    return true;
  }

  void restart(execution_context& context, opening /*how*/) override { rows_.reset(node_.create_enumerator(context)); }

  std::optional<row> next(execution_context& context) override { return rows_->next(context); }

 private:
  const node& node_;
  std::unique_ptr<enumerator> rows_;
};

}  // namespace

std::uint64_t row_source::skip(execution_context& context, std::uint64_t count) {
  const std::size_t size = context.row_stack.size();
  std::uint64_t skipped = 0;
  for (; skipped != count && push_next(context); ++skipped) cut_row_stack(context, size);
  return skipped;
}

std::optional<row> row_source::next(execution_context& context) {
  std::optional<row> result;  // made where it is returned
  const std::size_t size = context.row_stack.size();
  if (push_next(context)) move_from_stack(context, size, result.emplace());
  return result;
}

std::unique_ptr<row_source> open_rows(const node& of, execution_context& context) {
  if (const auto* own = dynamic_cast<const source_node*>(&of)) return own->open(context, all_rows);
  return std::make_unique<adapted_source>(of, context);
}

input_rows input::open(execution_context& context, std::uint64_t most_rows) const {
  input_rows rows(*this);
  rows.start(context, {most_rows});
  return rows;
}

std::unique_ptr<row_source> input::open_source(execution_context& context, std::uint64_t most_rows) const {
  if (const source_node* own = child_.own()) return own->open(context, most_rows);
  return std::make_unique<adapted_source>(*child_, context);
}

bool input_rows::has_grown_by(std::size_t count, bool found) const {
  if (!found) return count == 0;
  return count == input_->row_width().value_or(count);
}

}  // namespace ov::sql_executor
