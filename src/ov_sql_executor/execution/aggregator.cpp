#include "ov_sql_executor/execution/aggregator.hpp"

#include <algorithm>
#include <limits>
#include <optional>
#include <variant>

#include "ov_sql_executor/execution/grouping/distinct_rows.hpp"
#include "ov_sql_executor/execution/grouping/group_accumulators.hpp"
#include "ov_sql_executor/execution/grouping/row_batch.hpp"
#include "ov_sql_executor/execution/rows/row_stack.hpp"
#include "ov_sql_executor/expressions/operand_list.hpp"
#include "ov_sql_executor/expressions/operand_views.hpp"

namespace ov::sql_executor {

namespace {

// So many groups stay near the processor, so that it does not pay to have rows wait for memory together.
constexpr std::size_t few_groups = 1024;

bool counts_rows(const aggregate_entry& aggregate) { return std::holds_alternative<aggregates::count_rows>(aggregate); }

// Nothing looks at the rows, so that they are not even fetched where the child can tell how many there are.
class row_count_enumerator final : public row_source {
 public:
  row_count_enumerator(std::size_t width, input_rows child) : width_(width), child_(std::move(child)) {}

  bool push_next(execution_context& context) override {
    if (!child_.is_open()) return false;
    const auto count = static_cast<std::int64_t>(child_.skip(context, all_rows));
    child_.close();
    for (std::size_t i = 0; i < width_; ++i) push_value(context, count);
    return true;
  }

  void restart(execution_context& context, opening how) override { child_.start(context, how.for_all_rows()); }

 private:
  std::size_t width_;  // how often the count is asked for
  input_rows child_;   // until it is exhausted
};

class empty_group_by_aggregator_enumerator final : public row_source {
 public:
  empty_group_by_aggregator_enumerator(const std::vector<aggregate_entry>& aggregates, input_rows child)
      : aggregates_(aggregates), child_(std::move(child)) {
    start();
  }

  bool push_next(execution_context& context) override {
    if (!child_.is_open()) return false;
    const std::size_t size = context.row_stack.size();
    while (child_.push_next(context)) {
      accumulators_->add_row(0, context);
      cut_row_stack(context, size);
    }
    child_.close();
    accumulators_->push_results(0, context);
    return true;
  }

  void restart(execution_context& context, opening how) override {
    child_.start(context, how.for_all_rows());
    start();
  }

 private:
  void start() {
    accumulators_.emplace(aggregates_, group_count::one);
    accumulators_->add_group();
  }

  const std::vector<aggregate_entry>& aggregates_;  // the node's
  std::optional<group_accumulators> accumulators_;
  input_rows child_;  // until it is exhausted
};

class aggregator_enumerator final : public row_source {
 public:
  aggregator_enumerator(const std::vector<operators::operand>& group_keys,
                        const std::vector<aggregate_entry>& aggregates, input_rows child)
      : group_keys_(group_keys), aggregates_(aggregates), child_(std::move(child)) {
    start();
  }

  bool push_next(execution_context& context) override {
    if (!filled_) fill(context);
    if (cursor_ >= groups_->size()) return false;
    accumulators_->push_results(cursor_, context);
    for (std::size_t i = 0; i < group_keys_.size(); ++i) append_value(context.row_stack, groups_->value_at(cursor_, i));
    ++cursor_;
    return true;
  }

  void restart(execution_context& context, opening how) override {
    child_.start(context, how.for_all_rows());
    start();
  }

 private:
  void start() {
    groups_.emplace(group_keys_.size());
    accumulators_.emplace(aggregates_, group_count::any);
    filled_ = false;
    cursor_ = std::numeric_limits<std::size_t>::max();
  }

  void fill(execution_context& context) {
    filled_ = true;
    std::optional<row_batch> waiting;
    try {
      take_rows(waiting, context);
    } catch (...) {
      if (waiting) waiting->flush();  // those rows came before what failed, and may fail first
      throw;
    }
    if (waiting) waiting->flush();
    cursor_ = 0;
  }

  void take_rows(std::optional<row_batch>& waiting, execution_context& context) {
    operators::operand_views keys(group_keys_.size());
    const std::size_t size = context.row_stack.size();
    while (child_.push_next(context)) {
      if (groups_->size() > few_groups) {
        if (!waiting) waiting.emplace(group_keys_, aggregates_, *groups_, *accumulators_);
        waiting->add(context);
      } else {
        const distinct_rows::place group = groups_->find_or_insert(keys.evaluate(group_keys_, context));
        if (group.is_new) accumulators_->add_group();
        accumulators_->add_row(group.index, context);
      }
      cut_row_stack(context, size);
    }
  }

  const std::vector<operators::operand>& group_keys_;  // the node's, like the aggregates
  const std::vector<aggregate_entry>& aggregates_;
  std::optional<distinct_rows> groups_;
  std::optional<group_accumulators> accumulators_;
  bool filled_ = false;
  std::size_t cursor_ = 0;  // behind all groups until they are complete
  input_rows child_;
};

}  // namespace

aggregator::aggregator(std::unique_ptr<node> child, std::vector<std::unique_ptr<operators::operator_base>> group_keys,
                       std::vector<aggregate_entry> aggregates)
    : child_(std::move(child)),
      group_keys_(operators::to_operands(std::move(group_keys))),
      aggregates_(std::move(aggregates)) {}

std::unique_ptr<row_source> aggregator::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  input_rows child = child_.open(context);
  if (group_keys_.empty()) {
    if (std::ranges::all_of(aggregates_, counts_rows)) {
      return std::make_unique<row_count_enumerator>(aggregates_.size(), std::move(child));
    }
    return std::make_unique<empty_group_by_aggregator_enumerator>(aggregates_, std::move(child));
  }
  return std::make_unique<aggregator_enumerator>(group_keys_, aggregates_, std::move(child));
}

node_description aggregator::describe() const {
  const std::string aggregates = std::to_string(aggregates_.size()) + " aggregates";
  return {"aggregator", aggregates + ", " + std::to_string(group_keys_.size()) + " group keys", {&child_}};
}

}  // namespace ov::sql_executor
