#include "ov_sql_executor/execution/order_by.hpp"

#include <algorithm>
#include <utility>

#include "ov_sql_executor/execution/stack_row.hpp"
#include "ov_sql_executor/expressions/operand_list.hpp"
#include "ov_sql_executor/values/sort_order.hpp"

namespace ov::sql_executor {

namespace {

// A row on the way through the sort: its keys, each evaluated once, travel with it.
struct sorted_row {
  row keys;
  row values;
};

class order_by_enumerator final : public row_source {
 public:
  explicit order_by_enumerator(std::vector<row> rows) : rows_(std::move(rows)) {}

  bool push_next(execution_context& context) override {
    if (cursor_ == rows_.size()) return false;
    move_onto_stack(context, rows_[cursor_++]);
    return true;
  }

  std::optional<row> next(execution_context& /*context*/) override {
    if (cursor_ == rows_.size()) return std::nullopt;
    return std::move(rows_[cursor_++]);
  }

 private:
  std::vector<row> rows_;
  std::size_t cursor_ = 0;
};

std::vector<sorted_row> read_rows(row_source& child, const std::vector<operators::operand>& keys,
                                  execution_context& context) {
  std::vector<sorted_row> rows;
  const std::size_t size = context.row_stack.size();
  while (child.push_next(context)) {
    sorted_row& read = rows.emplace_back();
    read.keys.reserve(keys.size());
    for (const operators::operand& key : keys) key.append_to(read.keys, context);
    move_from_stack(context, size, read.values);
  }
  return rows;
}

bool goes_before(const sorted_row& left, const sorted_row& right, const std::vector<bool>& ascending) {
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    const std::strong_ordering order = sort_order(view_of(left.keys[i]), view_of(right.keys[i]));
    if (order != 0) return ascending[i] ? order < 0 : order > 0;
  }
  return false;
}

}  // namespace

order_by::order_by(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> keys,
                   std::vector<bool> directions)
    : child_(std::move(child)), keys_(operators::to_operands(std::move(keys))), directions_(std::move(directions)) {}

std::unique_ptr<row_source> order_by::open(execution_context& context) const {
  std::unique_ptr<row_source> child = child_.open(context);
  std::vector<sorted_row> sorted = read_rows(*child, keys_, context);
  std::sort(sorted.begin(), sorted.end(),
            [this](const sorted_row& left, const sorted_row& right) { return goes_before(left, right, directions_); });
  std::vector<row> rows;
  rows.reserve(sorted.size());
  for (sorted_row& each : sorted) rows.push_back(std::move(each.values));
  return std::make_unique<order_by_enumerator>(std::move(rows));
}

}  // namespace ov::sql_executor
