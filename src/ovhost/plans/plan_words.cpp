#include "ovhost/plans/plan_words.hpp"

#include <algorithm>
#include <array>
#include <cassert>
#include <string_view>
#include <utility>
#include <variant>

#include "ovhost/plans/expression_words.hpp"
#include "ovhost/plans/join_words.hpp"

namespace ovhost {
namespace {

using namespace physical_queryplan;
using namespace physical_queryplan::QueryPlan;

std::vector<std::string> chain(std::vector<std::string> first, const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// Every aggregate needs a line here, or it does not compile.
constexpr std::string_view word_of(const SumOf&) { return "sum"; }
constexpr std::string_view word_of(const CountOf&) { return "count"; }
constexpr std::string_view word_of(const CountRows&) { return "count of rows"; }
constexpr std::string_view word_of(const Maximum&) { return "maximum"; }
constexpr std::string_view word_of(const Minimum&) { return "minimum"; }
constexpr std::string_view word_of(const Average&) { return "average"; }
constexpr std::string_view word_of(const CountDistinct&) { return "count of distinct"; }
constexpr std::string_view word_of(const CountDistinctRows&) { return "count of distinct rows"; }

struct bound_words {
  std::set<bound> scan_range::*member;
  std::string_view word;
};
constexpr std::array<bound_words, 6> comparisons = {{{&scan_range::equal_to, " = "},
                                                     {&scan_range::less_than, " < "},
                                                     {&scan_range::at_most, " <= "},
                                                     {&scan_range::greater_than, " > "},
                                                     {&scan_range::at_least, " >= "},
                                                     {&scan_range::starts_with, " begins with "}}};

std::string key_words(const index_info& index) {
  std::string words;
  for (const key_column_info& each : index.columns) {
    words += (words.empty() ? "" : ", ") + each.property.name + (each.ascending ? "" : " descending");
  }
  return (index.unique ? "unique index " : "index ") + index.name + " (" + words + ")";
}

class describer {
 public:
  explicit describer(expression_words words) : words_(std::move(words)) {}

  plan_step operator()(const plan& of) const {
    assert(std::ranges::none_of(find_children(of), [](auto* child) { return child != nullptr && *child == nullptr; }));
    return std::visit([this](const auto& held) { return describe(held); }, static_cast<const predicate_variant&>(of));
  }

 private:
  // Describes a step that reads one input and hands on its columns, as most do.
  plan_step over(const plan& child, std::string does, std::vector<std::string> details) const {
    plan_step input = (*this)(child);
    std::vector<std::string> columns = input.columns;
    return {std::move(does), std::move(details), std::move(columns), {std::move(input)}};
  }

  plan_step over_both(const plan& left, const plan& right, std::string does, std::vector<std::string> details) const {
    std::vector<plan_step> inputs = {(*this)(left), (*this)(right)};
    std::vector<std::string> columns = chain(inputs[0].columns, inputs[1].columns);
    return {std::move(does), std::move(details), std::move(columns), std::move(inputs)};
  }

  plan_step describe(const NestedLoopJoin& of) const {
    return over_both(*of.left, *of.right, "join: for each left row the right rows", {});
  }
  plan_step describe(const LeftJoin& of) const {
    return over_both(*of.left, *of.right, "left join: for each left row the right rows, or one of NULLs", {});
  }
  plan_step describe(const FullJoin& of) const {
    return over_both(*of.left, *of.right, "full join", {of.condition ? "on " + words_(*of.condition) : "of all pairs"});
  }

  plan_step describe(const Scan& of) const {
    const std::string name = words_(of.variable);
    const index_info index = words_.metadata().index(of.index);
    std::vector<std::string> details = {"by " + key_words(index)};
    if (!of.ascending) details.emplace_back("backwards");
    for (std::size_t at = 0; at < of.ranges.size(); ++at) add_bounds(details, of.ranges[at], key_name(index, at));
    return {"scan " + words_.metadata().table(of.variable.table).name + " as " + name, details, {name}, {}};
  }

  static std::string key_name(const index_info& index, std::size_t at) {
    return at < index.columns.size() ? index.columns[at].property.name : "key column " + std::to_string(at);
  }

  void add_bounds(std::vector<std::string>& details, const scan_range& range, const std::string& column) const {
    for (const bound_words& comparison : comparisons) {
      for (const bound& each : range.*comparison.member) {
        details.push_back("where " + column + std::string(comparison.word) + words_(each.expression) +
                          (each.rejects_null ? "" : " (NULL is the lowest)"));
      }
    }
  }

  plan_step describe(const Filter& of) const { return over(*of.child, "filter", {words_(of.predicate)}); }

  plan_step describe(const Projection& of) const {
    plan_step step = over(*of.child, "project", {});
    step.columns = say_all(of.items);
    step.details = {join_words(step.columns, ", ")};
    return step;
  }

  plan_step describe(const GenerativeAssignment& of) const {
    return {"one row", {definition(of.column, of.expression)}, {words_(of.column)}, {}};
  }

  plan_step describe(const Extension& of) const {
    plan_step step = over(*of.child, "extend", {});
    for (const assignment& each : of.assignments) {
      step.details.push_back(definition(each.column, each.expression));
      step.columns.push_back(words_(each.column));
    }
    return step;
  }

  // Says the table of a variable, too: the variable's own name may be that of the reference that gives it its value.
  std::string definition(const column_ref& column, const expression& value) const {
    const auto* const defined = std::get_if<variable>(&column);
    const std::string table = defined == nullptr ? "" : words_.metadata().table(defined->table).name + " ";
    return table + words_(column) + " := " + words_(value);
  }

  std::vector<std::string> say_all(const std::vector<expression>& all) const {
    std::vector<std::string> words;
    words.reserve(all.size());
    for (const expression& each : all) words.push_back(words_(each));
    return words;
  }

  plan_step describe(const Aggregation& of) const {
    plan_step step = over(*of.child, "group", {});
    step.columns.clear();
    for (const aggregate& each : of.aggregates) {
      std::visit([&](const auto& held) { add_aggregate(step, word_of(held), held); }, each);
    }
    for (const assignment& each : of.group_by) {
      step.details.push_back("by " + words_(each.column) + " := " + words_(each.expression));
      step.columns.push_back(words_(each.column));
    }
    return step;
  }

  void add_aggregate(plan_step& step, std::string_view word, const aggregation& of) const {
    const std::string arguments = of.arguments.empty() ? "" : "(" + join_words(say_all(of.arguments), ", ") + ")";
    step.columns.push_back(words_(of.column));
    step.details.push_back(step.columns.back() + " := " + std::string(word) + arguments);
  }

  plan_step describe(const OrderBy& of) const {
    plan_step step = over(*of.child, "order", {});
    for (const order_key& each : of.keys) {
      step.details.push_back("by " + words_(each.expression) + (each.ascending ? "" : " descending"));
    }
    return step;
  }

  plan_step describe(const LimitOffset& of) const {
    plan_step step = over(*of.child, "limit", {});
    if (of.offset) step.details.push_back("skip " + words_(*of.offset));
    if (of.limit) step.details.push_back("at most " + words_(*of.limit));
    return step;
  }

  plan_step describe(const Union& of) const {
    plan_step step = over_both(*of.left, *of.right, "union", {});
    step.columns = step.inputs[0].columns;
    return step;
  }

  expression_words words_;
};

}  // namespace

plan_step describe(const plan& of, const catalog& metadata, const column_names& columns) {
  return describer(expression_words(metadata, columns))(of);
}

std::vector<std::string> headings(const plan& of, const catalog& metadata, const column_names& columns) {
  return describe(of, metadata, columns).columns;
}

}  // namespace ovhost
