#include "ov_sql_executor/execution/filter.hpp"

#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

namespace {

class filter_enumerator final : public row_source {
 public:
  filter_enumerator(const operators::operand& predicate, input_rows child)
      : predicate_(predicate), child_(std::move(child)) {}

  bool push_next(execution_context& context) override {
    const std::size_t size = context.row_stack.size();
    while (child_.push_next(context)) {
      if (predicate_.holds(context)) return true;
      cut_row_stack(context, size);
    }
    return false;
  }

  void restart(execution_context& context, opening how) override { child_.start(context, how.for_all_rows()); }

 private:
  const operators::operand& predicate_;  // the node's
  input_rows child_;
};

}  // namespace

std::unique_ptr<row_source> filter::open(execution_context& context, std::uint64_t /*most_rows*/) const {
  return std::make_unique<filter_enumerator>(predicate_, child_.open(context));
}

}  // namespace ov::sql_executor
