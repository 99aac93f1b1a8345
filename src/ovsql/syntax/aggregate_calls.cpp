#include "ovsql/syntax/aggregate_calls.hpp"

#include <algorithm>
#include <array>
#include <vector>

namespace ovsql::syntax {
namespace {

constexpr std::array<std::string_view, 5> names = {"avg", "count", "max", "min", "sum"};

// Adds the operands of an expression to a list. Those of a comparison with a subquery are its own, the subquery's not.
struct operand_collector {
  std::vector<const expression*>& into;

  void add(const expression* of) const {
    if (of != nullptr) into.push_back(of);
  }
  void add(expression_list all) const { into.insert(into.end(), all.begin(), all.end()); }

  template <class Leaf>
  void operator()(const Leaf&) const {}
  void operator()(const unary& of) const { add(of.operand); }
  void operator()(const binary& of) const {
    add(of.left);
    add(of.right);
  }
  void operator()(const chain& of) const { add(of.operands); }
  void operator()(const is_test& of) const { add(of.operand); }
  void operator()(const is_distinct& of) const {
    add(of.left);
    add(of.right);
  }
  void operator()(const is_of& of) const { add(of.operand); }
  void operator()(const between& of) const {
    add(of.operand);
    add(of.low);
    add(of.high);
  }
  void operator()(const like& of) const {
    add(of.operand);
    add(of.pattern);
  }
  void operator()(const in_list& of) const {
    add(of.operand);
    add(of.members);
  }
  void operator()(const in_query& of) const { add(of.operand); }
  void operator()(const quantified& of) const { add(of.left); }
  void operator()(const conditional& of) const {
    add(of.operand);
    add(of.otherwise);
    for (const case_branch& each : of.branches) {
      add(each.condition);
      add(each.result);
    }
  }
  void operator()(const cast& of) const { add(of.operand); }
  void operator()(const call& of) const { add(of.arguments); }
};

}  // namespace

bool is_aggregate(std::string_view function) { return std::find(names.begin(), names.end(), function) != names.end(); }

bool has_aggregates(const select& written, std::span<const order_item> order_by) {
  std::vector<const expression*> pending;
  for (const select_item& each : written.items) pending.push_back(each.value);
  for (const order_item& each : order_by) pending.push_back(each.key);
  while (!pending.empty()) {
    const expression& next = *pending.back();
    pending.pop_back();
    const auto* const found = std::get_if<call>(&next.is);
    if (found != nullptr && is_aggregate(found->function.text)) return true;
    std::visit(operand_collector{pending}, next.is);
  }
  return false;
}

}  // namespace ovsql::syntax
