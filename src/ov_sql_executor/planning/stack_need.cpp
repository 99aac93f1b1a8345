#include "ov_sql_executor/planning/stack_need.hpp"

#include <algorithm>
#include <optional>
#include <set>
#include <variant>
#include <vector>

#include "ov_sql_executor/support/stack_weights.hpp"

namespace physical_to_exec {

namespace {

using namespace physical_queryplan::QueryPlan;  // the alternatives are named one by one below
using physical_queryplan::And;
using physical_queryplan::expression;
using physical_queryplan::find_operation;
using physical_queryplan::operation;
using physical_queryplan::Or;
namespace stack_weights = ov::sql_executor::stack_weights;

class need_measurement {
 public:
  std::size_t of(const PredicateVariant& root) {
    open_plans_.push_back({&root, 0});
    while (!open_plans_.empty()) {
      const open_plan next = open_plans_.back();
      open_plans_.pop_back();
      measure(*next.plan, next.above + stack_weights::node);
    }
    return need_;
  }

  void operator()(const Scan& plan) {
    for (const scan_range& range : plan.ranges) {
      for (const auto* bounds : {&range.equal_to, &range.less_than, &range.at_most, &range.greater_than,
                                 &range.at_least, &range.starts_with}) {
        for (const bound& each : *bounds) measure(each.expression);
      }
    }
  }
  void operator()(const FullJoin& plan) { measure(plan.condition); }
  void operator()(const Filter& plan) { measure(plan.predicate); }
  void operator()(const Projection& plan) { measure(plan.items); }
  void operator()(const GenerativeAssignment& plan) { measure(plan.expression); }
  void operator()(const Extension& plan) { measure(plan.assignments); }
  void operator()(const Aggregation& plan) {
    for (const aggregate& each : plan.aggregates) {
      if (each.valueless_by_exception()) continue;
      std::visit([this](const aggregation& held) { measure(held.arguments); }, each);
    }
    measure(plan.group_by);
  }
  void operator()(const OrderBy& plan) {
    for (const order_key& key : plan.keys) measure(key.expression);
  }
  void operator()(const LimitOffset& plan) {
    measure(plan.limit);
    measure(plan.offset);
  }
  void operator()(const NestedLoopJoin& /*no expressions*/) {}
  void operator()(const LeftJoin& /*no expressions*/) {}
  void operator()(const Union& /*no expressions*/) {}

 private:
  struct open_plan {
    const PredicateVariant* plan;
    std::size_t above;  // what the levels above it need
  };
  struct open_operation {
    const expression* whole;
    const operation* held;
    std::size_t need;
  };

  void measure(const PredicateVariant& plan, std::size_t need) {
    need_ = std::max(need_, need);
    if (plan.valueless_by_exception()) return;
    above_ = need;
    std::visit(*this, static_cast<const predicate_variant&>(plan));
    for (const child_ptr* child : find_children(plan)) {
      if (child != nullptr && *child != nullptr) open_plans_.push_back({child->get(), need});
    }
  }

  void measure(const expression& any) {
    open(any, above_, false);
    while (!open_operations_.empty()) {
      const open_operation next = open_operations_.back();
      open_operations_.pop_back();
      for (std::size_t i = 0; i < next.held->operands.size(); ++i) {
        const expression& each = next.held->operands[i];
        open(each, next.need, i < 2 && is_same_connective(*next.whole, each));
      }
    }
  }
  void measure(const std::optional<expression>& any) {
    if (any) measure(*any);
  }
  void measure(const std::vector<expression>& list) {
    for (const expression& each : list) measure(each);
  }
  void measure(const std::vector<assignment>& list) {
    for (const assignment& each : list) measure(each.expression);
  }

  void open(const expression& any, std::size_t above, bool is_same_level) {
    const operation* const held = find_operation(any);
    if (held == nullptr) return;
    const std::size_t need = above + (is_same_level ? 0 : stack_weights::operation);
    need_ = std::max(need_, need);
    open_operations_.push_back({&any, held, need});
  }

  static bool is_same_connective(const expression& outer, const expression& inner) {
    return outer.index() == inner.index() && (std::holds_alternative<And>(outer) || std::holds_alternative<Or>(outer));
  }

  std::size_t need_ = 0;   // the greatest so far
  std::size_t above_ = 0;  // of the plan whose expressions are measured
  std::vector<open_plan> open_plans_;
  std::vector<open_operation> open_operations_;
};

}  // namespace

std::size_t stack_need(const PredicateVariant& plan) { return need_measurement().of(plan); }

}  // namespace physical_to_exec
