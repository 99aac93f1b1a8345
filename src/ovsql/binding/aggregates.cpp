#include <algorithm>
#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

using namespace physical_queryplan;
using ovhost::lit;

template <class Aggregate>
aggregate make(std::vector<expression> arguments, value_kind result, const identifier& id) {
  Aggregate made;
  made.arguments = std::move(arguments);
  made.column = ovhost::with_type_of(result, [&]<class T>() { return computed_column(computed<T>{id}); });
  if (result == value_kind::float64) made.result_type = meta_support::TypeIdentity<double>();
  if (result == value_kind::decimal) made.result_type = meta_support::TypeIdentity<Decimal>();
  return made;
}

aggregate make_named(std::string_view function, std::vector<expression> arguments, value_kind kind,
                     const identifier& id) {
  if (function == "sum") return make<QueryPlan::SumOf>(std::move(arguments), kind, id);
  if (function == "min") return make<QueryPlan::Minimum>(std::move(arguments), kind, id);
  if (function == "max") return make<QueryPlan::Maximum>(std::move(arguments), kind, id);
  if (function == "avg") return make<QueryPlan::Average>(std::move(arguments), kind, id);
  if (arguments.empty()) return make<QueryPlan::CountRows>({}, kind, id);
  return make<QueryPlan::CountOf>(std::move(arguments), kind, id);
}

const QueryPlan::aggregation& base_of(const aggregate& of) {
  return std::visit([](const QueryPlan::aggregation& held) -> const QueryPlan::aggregation& { return held; }, of);
}

bool computes_the_same(const aggregate& left, const aggregate& right) {
  const auto& a = base_of(left).arguments;
  const auto& b = base_of(right).arguments;
  return left.index() == right.index() && base_of(left).column.index() == base_of(right).column.index() &&
         std::equal(a.begin(), a.end(), b.begin(), b.end(), same_expression);
}

// What a function makes of values of a kind. The average of integers is a double.
value_kind result_of(std::string_view function, value_kind kind) {
  if (function == "count") return value_kind::int64;
  if (function == "avg" && kind != value_kind::decimal) return value_kind::float64;
  if (function == "sum" && kind == value_kind::uint64) return value_kind::int64;
  return kind;
}

}  // namespace

expression read_of_aggregate(const aggregate& of) {
  return std::visit([](const auto& held) { return expression(held); }, base_of(of).column);
}

aggregate binder::extreme_of(bool greatest, expression argument) {
  std::vector<expression> arguments;
  arguments.push_back(std::move(argument));
  const value_kind kind = ovhost::kind_of(arguments.front());
  return make_named(greatest ? "max" : "min", std::move(arguments), kind, names_.make(greatest ? "most" : "least", {}));
}

bound binder::bind_aggregate(const syntax::call& written, syntax::place at, const expression_site& site) {
  const std::string function(written.function.text);
  if (site.aggregates == nullptr) {
    throw error(error_kind::name, function + "() cannot stand in " + std::string(site.clause), at.begin);
  }
  if (written.star ? function != "count" : written.arguments.size() != 1) {
    throw error(error_kind::type, function + "() takes one value", at.begin);
  }
  grouping& into = *site.aggregates;
  const grouping* const outside = std::exchange(site.scope->groups, nullptr);
  const expression_site inside = {site.scope, &into.body->from, nullptr, "an aggregate"};
  bound argument{ovhost::lit(true), value_kind::boolean, at};
  if (!written.star) argument = bind(*written.arguments[0], inside);
  std::optional<bound> filter;
  if (written.filter != nullptr) filter = as_truth(bind(*written.filter, inside), "FILTER");
  site.scope->groups = outside;

  if (function == "sum" || function == "avg") argument = as_number(std::move(argument), function);
  if (argument.kind == value_kind::null && !written.star) {
    argument.kind = value_kind::int64;
    argument.value = ovhost::when_as(argument.kind, lit(true), std::move(argument.value), ovhost::null());
  }
  if (function == "avg" && argument.kind != value_kind::decimal) {
    argument.value = promoted(argument, value_kind::float64);
    argument.kind = value_kind::float64;
  }
  if (filter) {
    argument.value = ovhost::when_as(argument.kind, std::move(filter->value), std::move(argument.value), ovhost::null());
  }
  const bool matters = written.distinct && function != "min" && function != "max";
  if (matters && function == "count") return count_distinct(into, std::move(argument), at);
  if (matters) return aggregate_distinct(into, function, std::move(argument), at);
  std::vector<expression> arguments;
  const value_kind kind = result_of(function, argument.kind);
  const table* const target = argument.target;
  if (!written.star || filter) arguments.push_back(std::move(argument.value));
  bound made = add_aggregate(into, make_named(function, std::move(arguments), kind, names_.make(function, {})), kind, at);
  made.target = target;
  return made;
}

bound binder::add_aggregate(grouping& into, aggregate of, value_kind kind, syntax::place at) {
  auto& all = into.body->aggregates;
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const aggregate& each) { return computes_the_same(each, of); });
  if (found != all.end()) return {read_of_aggregate(*found), kind, at};
  all.push_back(std::move(of));
  return {read_of_aggregate(all.back()), kind, at};
}

bound binder::add_count(grouping& into, std::vector<expression> of, syntax::place at) {
  const value_kind counted = value_kind::int64;
  return add_aggregate(into, make_named("count", std::move(of), counted, names_.make("count", {})), counted, at);
}

// The executor counts NULL as one more distinct value: it is taken back.
bound binder::count_distinct(grouping& into, bound of, syntax::place at) {
  const value_kind counted = value_kind::int64;
  bound distinct = add_aggregate(into,
                                 make<QueryPlan::CountDistinct>({of.value}, value_kind::uint64,
                                                                names_.make("distinct", {})),
                                 value_kind::uint64, at);
  const bound rows = add_count(into, {}, at);
  const bound known = add_count(into, {of.value}, at);
  expression nulls = ovhost::when_as(counted, ovhost::gt(rows.value, known.value), lit(1), lit(0));
  return {ovhost::sub(ovhost::to(counted, std::move(distinct.value)), std::move(nulls)), counted, at, nullptr, {}, 8};
}

// sum(DISTINCT x) and avg(DISTINCT x): the rows are grouped by x as well, and these groups are grouped again.
bound binder::aggregate_distinct(grouping& into, const std::string& function, bound of, syntax::place at) {
  if (into.distinct && !same_expression(into.distinct->value, of.value)) {
    throw error(error_kind::unsupported, "sum and avg of different DISTINCT values in one SELECT are not supported",
                at.begin);
  }
  const value_kind kind = result_of(function, of.kind);
  if (!into.distinct) into.distinct = std::move(of);
  const identifier id = names_.make(function, {});
  into.distinct_aggregates.emplace_back(function, id);
  return {ovhost::with_type_of(kind, [&]<class T>() { return expression(computed<T>{id}); }), kind, at};
}

// Groups by the distinct values, too, and makes of these partial results what was asked for.
void binder::regroup(grouping& groups) {
  select_body& body = *groups.body;
  if (!groups.distinct) return;
  const assignment distinct = define("distinct", groups.distinct->value, groups.distinct->kind, {});
  body.regrouped = true;
  for (aggregate& each : body.aggregates) regroup_aggregate(each, body);
  for (assignment& each : body.group_by) {
    assignment inner = define("key", each.expression, kind_of_column(each), {});
    body.outer_group_by.push_back({read_of(inner), each.column});
    each = std::move(inner);
  }
  body.group_by.push_back(distinct);
  for (const auto& [function, id] : groups.distinct_aggregates) {
    body.outer_aggregates.push_back(
        make_named(function, {read_of(distinct)}, result_of(function, groups.distinct->kind), id));
  }
}

void binder::regroup_aggregate(aggregate& of, select_body& body) {
  const QueryPlan::aggregation& whole = base_of(of);
  const bool is_count = std::holds_alternative<QueryPlan::CountOf>(of) || std::holds_alternative<QueryPlan::CountRows>(of);
  const bool is_extreme = std::holds_alternative<QueryPlan::Maximum>(of) || std::holds_alternative<QueryPlan::Minimum>(of);
  if (!is_count && !is_extreme && !std::holds_alternative<QueryPlan::SumOf>(of)) {
    throw error(error_kind::unsupported,
                "sum(DISTINCT ...) and avg(DISTINCT ...) do not go together with avg and count(DISTINCT ...) in one SELECT");
  }
  const value_kind kind = static_cast<value_kind>(whole.column.index());
  const identifier id = std::visit([](const auto& held) { return held.id; }, whole.column);
  const identifier part = names_.make("part", {});
  const expression read = ovhost::with_type_of(kind, [&]<class T>() { return expression(computed<T>{part}); });
  const std::string_view outer = is_extreme ? (std::holds_alternative<QueryPlan::Maximum>(of) ? "max" : "min") : "sum";
  // A count of no rows is 0, which their sum is not.
  const identifier total = is_count ? names_.make("total", {}) : id;
  aggregate outer_aggregate = make_named(outer, {read}, kind, total);
  if (is_count) {
    const expression sum = computed<std::int64_t>{total};
    body.outer_extend.push_back(
        {ovhost::when_as(kind, ovhost::is_null(sum), lit(0), sum), computed<std::int64_t>{id}});
  }
  std::visit([&](QueryPlan::aggregation& held) {
    held.column = ovhost::with_type_of(kind, [&]<class T>() { return computed_column(computed<T>{part}); });
  }, of);
  body.outer_aggregates.push_back(std::move(outer_aggregate));
}

value_kind binder::kind_of_column(const assignment& of) { return ovhost::kind_of(read_of(of)); }

}  // namespace ovsql
