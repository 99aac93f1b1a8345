#include <algorithm>
#include <iterator>
#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

using namespace physical_queryplan;
using ovhost::lit;

template <class Aggregate>
aggregate make(std::vector<expression>&& arguments, value_kind result, const identifier& id) {
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

[[noreturn]] void refuse_mixture(std::size_t position) {
  throw error(error_kind::unsupported,
              "beside GROUP BY, sum and avg of DISTINCT values go with no aggregate of other DISTINCT values",
              position);
}

// Integers are averaged as doubles.
bound as_averaged(bound of) {
  if (of.kind == value_kind::decimal) return of;
  of.value = promoted(of, value_kind::float64);
  of.kind = value_kind::float64;
  return of;
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

// An aggregate of nothing but columns of an enclosing query would be one of that query.
void binder::refuse_outer(const bound& argument, const select_scope& scope) {
  bool reads_outer = false;
  bool reads_own = false;
  for_each_column(argument.value, [&](std::uint32_t number) {
    const bool is_outer = std::find(scope.reads.begin(), scope.reads.end(), number) != scope.reads.end();
    (is_outer ? reads_outer : reads_own) = true;
  });
  if (!reads_outer || reads_own) return;
  throw error(error_kind::unsupported, "an aggregate in a subquery has to read a column of the subquery's own rows",
              argument.at.begin);
}

bound binder::bind_aggregate(const syntax::call& written, syntax::place at, const expression_site& site) {
  const std::string_view function = written.function.text;
  if (site.aggregates == nullptr) {
    throw error(error_kind::name, std::string(function) + "() cannot stand in " + std::string(site.clause), at.begin);
  }
  if (written.star ? function != "count" : written.arguments.size() != 1) {
    throw error(error_kind::type, std::string(function) + "() takes one value", at.begin);
  }
  grouping& into = *site.aggregates;
  const grouping* const outside = std::exchange(site.scope->groups, nullptr);
  const expression_site inside = {site.scope, &into.body->from, nullptr, "an aggregate"};
  bound argument{ovhost::lit(true), value_kind::boolean, at};
  if (!written.star) argument = bind(*written.arguments[0], inside);
  std::optional<bound> filter;
  if (written.filter != nullptr) filter = as_truth(bind(*written.filter, inside), "FILTER");
  site.scope->groups = outside;
  refuse_outer(argument, *site.scope);

  if (function == "sum" || function == "avg") argument = as_number(std::move(argument), function);
  const bool is_untyped = argument.kind == value_kind::null;
  if (is_untyped) {
    argument.kind = function == "sum" || function == "avg" ? value_kind::float64 : value_kind::text;
    argument.value = ovhost::when_as(argument.kind, lit(true), std::move(argument.value), ovhost::null());
  }
  if (filter) {
    argument.value =
        ovhost::when_as(argument.kind, std::move(filter->value), std::move(argument.value), ovhost::null());
  }
  const bool matters = written.distinct && function != "min" && function != "max";
  if (matters && function == "count") return count_distinct(into, argument, at);
  if (matters) {
    bound made = aggregate_distinct(into, written, std::move(argument), at);
    if (is_untyped) made.kind = value_kind::null;
    return made;
  }
  if (function == "avg") argument = as_averaged(std::move(argument));
  std::vector<expression> arguments;
  const value_kind kind = result_of(function, argument.kind);
  const table* const target = argument.target;
  if (!written.star || filter) arguments.push_back(std::move(argument.value));
  bound made =
      add_aggregate(into, make_named(function, std::move(arguments), kind, names_.make(function, {})), kind, at);
  made.target = target;
  if (is_untyped && function != "count") made.kind = value_kind::null;
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
bound binder::count_distinct(grouping& into, const bound& of, syntax::place at) {
  const value_kind counted = value_kind::int64;
  bound distinct =
      add_aggregate(into, make<QueryPlan::CountDistinct>({of.value}, value_kind::uint64, names_.make("distinct", {})),
                    value_kind::uint64, at);
  const bound rows = add_count(into, {}, at);
  const bound known = add_count(into, {of.value}, at);
  expression nulls = ovhost::when_as(counted, ovhost::gt(rows.value, known.value), lit(1), lit(0));
  return {ovhost::sub(ovhost::to(counted, std::move(distinct.value)), std::move(nulls)), counted, at, nullptr, {}, 8};
}

// sum(DISTINCT x) and avg(DISTINCT x): the rows are grouped by x as well, and these groups are grouped again.
bound binder::aggregate_distinct(grouping& into, const syntax::call& written, bound of, syntax::place at) {
  const std::string_view function = written.function.text;
  const value_kind kind = result_of(function, of.kind);
  into.mixes_distinct |= into.distinct && !same_expression(into.distinct->value, of.value);
  if (!into.distinct) into.distinct = std::move(of);
  const std::uint32_t number = new_item(*into.scope, at);
  const identifier id = names_.make(function, {into.scope->block, number});
  into.distinct_aggregates.push_back({written, at, id, number});
  return {ovhost::with_type_of(kind, [&]<class T>() { return expression(computed<T>{id}); }), kind, at};
}

bool binder::mixes_distinct(const grouping& groups) const {
  const auto& all = groups.body->aggregates;
  return groups.mixes_distinct || std::any_of(all.begin(), all.end(), [&](const aggregate& each) {
           return std::holds_alternative<QueryPlan::CountDistinct>(each) &&
                  !same_expression(base_of(each).arguments.front(), groups.distinct->value);
         });
}

// Computes each aggregate of distinct values by a query of its own, over the same rows.
void binder::compute_apart(grouping& groups) {
  select_scope& scope = *groups.scope;
  item_list apart;
  for (const grouping::distinct_aggregate& each : groups.distinct_aggregates) {
    const syntax::expression value{each.written, each.at};
    const syntax::select_item item{&value, {}};
    syntax::select alone = *groups.written;
    alone.distinct = false;
    alone.items = {&item, 1};
    alone.having = nullptr;
    const grouping* const outside = std::exchange(scope.groups, nullptr);
    query inner = bind_select(alone, {}, scope.outer);
    scope.groups = outside;
    for (const std::uint32_t column : inner.reads) scope.reads.push_back(column);
    const output result = inner.outputs.front();
    add_query(std::move(inner), item_kind::subquery, each.at, {&scope, &apart});
    ovsql::item named;
    named.kind = item_kind::computed;
    named.covers.set(each.item);
    named.needs = items_of(result.column, scope.block, names_);
    named.computed =
        assignment{result.column,
                   ovhost::with_type_of(result.kind, [&]<class T>() { return column_ref(computed<T>{each.column}); })};
    apart.items.push_back(std::move(named));
  }
  std::vector<item>& after = groups.body->after.items;
  after.insert(after.begin(), std::make_move_iterator(apart.items.begin()), std::make_move_iterator(apart.items.end()));
}

// Groups by the distinct values, too, and makes of these partial results what was asked for.
void binder::regroup(grouping& groups) {
  select_body& body = *groups.body;
  if (!groups.distinct) return;
  if (mixes_distinct(groups)) {
    if (!body.group_by.empty()) refuse_mixture(groups.distinct_aggregates.front().at.begin);
    compute_apart(groups);
    return;
  }
  const assignment distinct = define("distinct", groups.distinct->value, groups.distinct->kind, {});
  body.regrouped = true;
  for (const aggregate& each : std::exchange(body.aggregates, {})) regroup_aggregate(each, distinct, groups);
  for (assignment& each : body.group_by) {
    assignment inner = define("key", each.expression, kind_of_column(each), {});
    body.outer_group_by.push_back({read_of(inner), each.column});
    each = std::move(inner);
  }
  body.group_by.push_back(distinct);
  for (const grouping::distinct_aggregate& each : groups.distinct_aggregates) {
    const std::string_view function = each.written.function.text;
    bound argument{read_of(distinct), groups.distinct->kind};
    if (function == "avg") argument = as_averaged(std::move(argument));
    body.outer_aggregates.push_back(
        make_named(function, {argument.value}, result_of(function, groups.distinct->kind), each.column));
  }
}

// Computes an aggregate of the groups of distinct values, and from these results what was asked for.
void binder::regroup_aggregate(const aggregate& of, const assignment& distinct, grouping& groups) {
  select_body& body = *groups.body;
  const QueryPlan::aggregation& whole = base_of(of);
  const value_kind kind = static_cast<value_kind>(whole.column.index());
  const identifier id = std::visit([](const auto& held) { return held.id; }, whole.column);
  const auto add_part = [&](std::string_view function, std::vector<expression> arguments, value_kind part_kind) {
    body.aggregates.push_back(make_named(function, std::move(arguments), part_kind, names_.make("part", {})));
    return read_of_aggregate(body.aggregates.back());
  };
  const auto add_total = [&](std::string_view function, expression part, value_kind part_kind) {
    body.outer_aggregates.push_back(make_named(function, {std::move(part)}, part_kind, names_.make("total", {})));
    return read_of_aggregate(body.outer_aggregates.back());
  };
  const auto define_result = [&](expression value) {
    const auto named = [](const auto& held) { return column_ref(held); };
    body.outer_extend.push_back({std::move(value), std::visit(named, whole.column)});
  };
  if (std::holds_alternative<QueryPlan::CountDistinct>(of)) {
    body.outer_aggregates.push_back(make<QueryPlan::CountDistinct>({read_of(distinct)}, kind, id));
  } else if (std::holds_alternative<QueryPlan::CountOf>(of) || std::holds_alternative<QueryPlan::CountRows>(of)) {
    // A count of no rows is 0, which their sum is not.
    const expression total = add_total("sum", add_part("count", whole.arguments, kind), kind);
    define_result(ovhost::when_as(kind, ovhost::is_null(total), lit(0), total));
  } else if (std::holds_alternative<QueryPlan::Average>(of)) {
    const expression sum = add_total("sum", add_part("sum", whole.arguments, kind), kind);
    const value_kind counted = value_kind::int64;
    const expression count = add_total("sum", add_part("count", whole.arguments, counted), counted);
    define_result(ovhost::div(sum, ovhost::to(kind, count)));
  } else {
    const bool is_sum = std::holds_alternative<QueryPlan::SumOf>(of);
    const std::string_view function = is_sum ? "sum" : std::holds_alternative<QueryPlan::Maximum>(of) ? "max" : "min";
    body.outer_aggregates.push_back(make_named(function, {add_part(function, whole.arguments, kind)}, kind, id));
  }
}

value_kind binder::kind_of_column(const assignment& of) { return ovhost::kind_of(read_of(of)); }

}  // namespace ovsql
