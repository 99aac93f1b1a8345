#include "ov_sql_executor/execution/projection.hpp"

#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

namespace {

class projection_enumerator final : public row_source {
 public:
  projection_enumerator(const std::vector<projected_item>& items, input_rows child)
      : items_(items), child_(std::move(child)) {}

  // The results are made aside, since an operator of the host's own may look at the whole row stack.
  bool push_next(execution_context& context) override {
    const std::size_t size = context.row_stack.size();
    if (!child_.push_next(context)) return false;
    results_.clear();
    for (const projected_item& item : items_) item.append_to(results_, size, context);
    cut_row_stack(context, size);
    move_onto_stack(context, results_);
    return true;
  }

  void restart(execution_context& context, opening how) override { child_.start(context, how); }

  // Asked from outside, the results are made where they stay.
  std::optional<row> next(execution_context& context) override {
    std::optional<row> result;  // made where it is returned
    const std::size_t size = context.row_stack.size();
    if (!child_.push_next(context)) return result;
    result.emplace().reserve(items_.size());
    for (const projected_item& item : items_) item.append_to(*result, size, context);
    cut_row_stack(context, size);
    return result;
  }

 private:
  const std::vector<projected_item>& items_;  // the node's
  input_rows child_;
  row results_;  // its memory serves for all rows
};

class extending_enumerator final : public row_source {
 public:
  extending_enumerator(const std::vector<projected_item>& items, input_rows child)
      : items_(items), child_(std::move(child)) {}

  bool push_next(execution_context& context) override {
    if (!child_.push_next(context)) return false;
    if (items_.size() == 1) {
      items_.front().append_copy_to(context.row_stack, context);
    } else {
      push_results(context);
    }
    return true;
  }

  void restart(execution_context& context, opening how) override { child_.start(context, how); }

 private:
  // Several are made aside, since an operator of the host's own may look at the whole row stack.
  [[gnu::noinline]] void push_results(execution_context& context) {
    results_.clear();
    for (const projected_item& item : items_) item.append_copy_to(results_, context);
    move_onto_stack(context, results_);
  }

  const std::vector<projected_item>& items_;  // the node's
  input_rows child_;
  row results_;  // its memory serves for all rows
};

}  // namespace

projection::projection(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> expressions,
                       input_row what_happens)
    : child_(std::move(child)), items_(projected_item::make(std::move(expressions))), what_happens_(what_happens) {}

std::unique_ptr<row_source> projection::open(execution_context& context, std::uint64_t most_rows) const {
  if (what_happens_ == input_row::extended) {
    return std::make_unique<extending_enumerator>(items_, child_.open(context, most_rows));
  }
  return std::make_unique<projection_enumerator>(items_, child_.open(context, most_rows));
}

std::optional<std::size_t> projection::row_width() const {
  if (what_happens_ == input_row::replaced) return items_.size();
  return add_widths(child_.row_width(), items_.size());
}

node_description projection::describe() const {
  const bool extends = what_happens_ == input_row::extended;
  return {"projection", std::to_string(items_.size()) + (extends ? " values after the row" : " values"), {&child_}};
}

}  // namespace ov::sql_executor
