#include "fuzz/any_plan.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "ovhost/plans/plan_drawing.hpp"

namespace fuzz {

namespace {

using namespace ovhost;  // NOLINT: the words of plans

constexpr std::size_t most_scans = 4;  // of up to six rows each

using pair_maker = expression (*)(expression, expression);

}  // namespace

expressions joined(expressions first, const expressions& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

expressions shown(const expressions& columns) {
  expressions kept;
  for (const expression& each : columns) {
    const value_kind kind = kind_of(each);
    if (kind != value_kind::set_specifier && kind != value_kind::null) kept.push_back(each);
  }
  return kept;
}

void plan_maker::print(const plan& made) const {
  if (std::getenv("OV_FUZZ_PRINT") == nullptr) return;
  std::fputs(as_tree(describe(made, names_.names(), names_.columns())).c_str(), stderr);
}

relation plan_maker::any_relation(std::size_t steps, const expressions& outer) {
  if (steps == 0) return scanned(outer);
  const std::size_t kind = from_.below(9);
  if (kind < 3) return join_of(steps - 1, outer);
  relation of = any_relation(steps - 1, outer);
  const expressions scope = joined(of.columns, outer);
  if (kind == 3) return {filter(any_expression(value_kind::boolean, scope), std::move(of.made)), of.columns};
  if (kind == 4) return extended(std::move(of), outer);
  if (kind == 5) return grouped(std::move(of));
  if (kind == 6) {
    std::vector<order_key> keys;
    for (std::size_t i = from_.below(4); i != 0; --i) {
      keys.push_back({from_.below(2) == 0, any_expression(any_kind(), scope, 1)});
    }
    return {order(std::move(keys), std::move(of.made)), of.columns};
  }
  if (kind != 7) return united(std::move(of), outer);
  std::optional<expression> most;
  std::optional<expression> offset;
  if (!from_.one_in(3)) most = any_expression(numeric_kind(), outer, 1);
  if (from_.one_in(3)) offset = any_expression(numeric_kind(), outer, 1);
  return {limit(std::move(most), std::move(offset), std::move(of.made)), of.columns};
}

relation plan_maker::scanned(const expressions& outer) {
  if (++scans_ > most_scans) {
    relation one;
    one.made = generated(outer, one.columns);
    return one;
  }
  const table_variable variable = names_.over(from_.below(3) == 0 ? "q" : "p", fresh());
  const index& walked = from_.of(indexes());
  std::vector<scan_range> ranges;
  for (std::size_t i = from_.below(walked.kinds.size() + 1); i != 0; --i) {
    ranges.push_back(any_range(walked.kinds[ranges.size()], outer));
  }
  const walk direction = from_.below(2) == 0 ? walk::ascending : walk::descending;
  relation made{scan(variable, walked.name, std::move(ranges), direction), {variable}};
  for (const property& each : properties) made.columns.push_back(variable[each.name]);
  return made;
}

scan_range plan_maker::any_range(value_kind kind, const expressions& outer) {
  using maker = scan_range (*)(expression);
  static constexpr maker kinds[] = {key::equal, key::below, key::at_most, key::above, key::at_least, key::begins_with};
  scan_range range = key::any();
  for (std::size_t i = from_.below(3); i != 0; --i) {
    const maker make = kinds[from_.below(kind == value_kind::text || mixes_types_ ? 6 : 5)];
    const bool is_number = kind != value_kind::text && kind <= value_kind::decimal && kind != value_kind::boolean;
    range = key::both(std::move(range), make(any_expression(is_number ? numeric_kind() : kind, outer, 1)));
  }
  return from_.one_in(16) ? key::null() : range;
}

relation plan_maker::extended(relation of, const expressions& outer) {
  std::vector<assignment> added;
  for (std::size_t i = 1 + from_.below(2); i != 0; --i) {
    const auto column = names_.define(fresh(), any_expression(any_kind(), joined(of.columns, outer)));
    added.push_back(column);
    of.columns.push_back(column);
  }
  return {extend(std::move(added), std::move(of.made)), of.columns};
}

// Mostly begins with an equality of the two sides, by which inner sides are hashed.
expression plan_maker::join_condition(const expressions& left, const expressions& right, const expressions& outer) {
  const auto any = [&] { return any_expression(value_kind::boolean, joined(joined(left, right), outer), 2); };
  if (from_.below(3) == 0) return any();
  const auto equality = [&] {
    const value_kind kind = any_kind();
    const bool is_number = kind > value_kind::text && kind < value_kind::binary;
    const expression one = any_expression(kind, left, 1);
    const expression other = any_expression(is_number ? numeric_kind() : kind, right, 1);
    return from_.below(2) == 0 ? eq(one, other) : eq(other, one);
  };
  expression made = equality();
  for (std::size_t more = from_.below(3); more != 0; --more) {
    made = both(std::move(made), from_.below(2) == 0 ? equality() : any());
  }
  return made;
}

plan plan_maker::generated(const expressions& scope, expressions& columns) {
  const auto column = names_.define(fresh(), any_expression(any_kind(), scope));
  columns.push_back(column);
  return generate(column);
}

relation plan_maker::grouped(relation of) {
  std::vector<aggregate> aggregates;
  std::vector<assignment> keys;
  relation made;
  for (std::size_t i = from_.below(4); i != 0; --i) {
    const std::size_t kind = from_.below(8);
    const expression argument = any_expression(kind < 3 ? numeric_kind() : any_kind(), of.columns, 1);
    using maker = aggregation_column (query::*)(std::string, expression);
    static constexpr maker makers[] = {&query::sum,   &query::average, &query::maximum,       &query::minimum,
                                       &query::count, nullptr,         &query::count_distinct};
    const auto column = kind == 5   ? names_.count_rows(fresh())
                        : kind == 7 ? names_.count_distinct_rows(fresh(), {argument, argument})
                                    : (names_.*makers[kind])(fresh(), argument);
    aggregates.push_back(column);
    made.columns.push_back(column);
  }
  for (std::size_t i = from_.below(3); i != 0; --i) {
    const auto key = names_.define(fresh(), any_expression(any_kind(), of.columns, 1));
    keys.push_back(key);
    made.columns.push_back(key);
  }
  made.made = group(std::move(aggregates), std::move(keys), std::move(of.made));
  return made;
}

relation plan_maker::join_of(std::size_t steps, const expressions& outer) {
  relation left = any_relation(steps / 2, outer);
  const expressions seen = joined(left.columns, outer);
  const std::size_t kind = from_.below(5);
  if (kind == 0) {
    expressions columns = left.columns;
    plan computed = generated(seen, columns);
    return {join(std::move(left.made), std::move(computed)), columns};
  }
  relation right = any_relation(steps / 2, kind == 1 ? outer : seen);
  const expressions columns = joined(left.columns, right.columns);
  const auto test = [&] { return join_condition(left.columns, right.columns, outer); };
  if (kind == 1) {
    std::optional<expression> condition;
    if (!from_.one_in(4)) condition = test();
    return {full_join(std::move(condition), std::move(left.made), std::move(right.made)), columns};
  }
  if (from_.below(2) == 0) right.made = filter(test(), std::move(right.made));
  return {(kind == 2 ? left_join : join)(std::move(left.made), std::move(right.made)), columns};
}

relation plan_maker::united(relation left, const expressions& outer) {
  relation right = scanned(outer);
  const value_kind kind = any_kind();
  const expression one = any_expression(kind, joined(left.columns, outer), 1);
  expression other = any_expression(kind, joined(right.columns, outer), 1);
  if (kind_of(other) != kind_of(one)) other = null();  // the host's rule: both have one type
  const auto column = names_.define(fresh(), one);
  auto from_left = project({column}, extend({column}, std::move(left.made)));
  auto from_right = project({column}, extend({column.with(other)}, std::move(right.made)));
  return {unite(std::move(from_left), std::move(from_right)), {column}};
}

value_kind plan_maker::numeric_kind() {
  using enum value_kind;
  static constexpr value_kind kinds[] = {int64, uint64, decimal, float64, float32};
  return from_.of(kinds);
}

expression plan_maker::any_expression(value_kind kind, const expressions& scope, std::size_t depth) {
  if (mixes_types_ && from_.one_in(40)) kind = any_kind();
  if (depth == 0 || from_.below(3) == 0) return leaf(kind, scope);
  const auto of = [&](value_kind operand) { return any_expression(operand, scope, depth - 1); };
  if (from_.one_in(8) && kind != value_kind::null) {
    return when_as(kind, condition(scope, depth - 1), of(kind), of(kind));
  }
  if (kind == value_kind::boolean) return condition(scope, depth - 1);
  if (kind == value_kind::text) return text(scope, depth - 1);
  if (kind >= value_kind::uint64 && kind <= value_kind::float32) return calculation(kind, scope, depth - 1);
  if (kind == value_kind::set_specifier && from_.below(4) == 0) return to(kind, of(value_kind::text));
  return leaf(kind, scope);
}

expression plan_maker::condition(const expressions& scope, std::size_t depth) {
  using enum value_kind;
  static constexpr pair_maker comparisons[] = {eq, ne, le, lt, gt, ge};
  static constexpr pair_maker connectives[] = {both, either, exclusive};
  const auto of = [&](value_kind kind) { return any_expression(kind, scope, depth); };
  const auto words = [&] { return of(value_kind::text); };
  const std::size_t kind = from_.below(8);
  if (kind == 0) {
    const value_kind both_are = any_kind();
    return from_.of(comparisons)(of(both_are), of(both_are));
  }
  if (kind == 1 && from_.one_in(8)) return listed(scope, depth);
  if (kind == 1) return from_.of(connectives)(of(boolean), of(boolean));
  if (kind == 2) return negated(of(boolean));
  if (kind == 3) return from_.below(2) == 0 ? is_null(of(any_kind())) : is_not_null(of(any_kind()));
  if (kind == 4) return from_.below(2) == 0 ? like(words(), words()) : starts_with(words(), words());
  if (kind == 5 && from_.below(3) == 0) return is_a(of(reference), of(set_specifier));
  if (kind == 5) return is_a(of(reference), from_.below(2) == 0 ? "p" : "q");
  if (kind == 6) return to(boolean, of(numeric_kind()));
  return from_.of(comparisons)(of(numeric_kind()), of(numeric_kind()));
}

// IN or NOT IN.
expression plan_maker::listed(const expressions& scope, std::size_t depth) {
  const bool is_in = from_.below(2) == 0;
  const value_kind kind = any_kind();
  const expression tested = any_expression(kind, scope, depth);
  const bool mixes_numbers = kind > value_kind::text && kind < value_kind::binary;
  expression chain = lit(!is_in);
  for (std::size_t left = 4 + from_.below(6); left != 0; --left) {
    const expression member = leaf(mixes_numbers ? numeric_kind() : kind, {});
    chain = is_in ? either(std::move(chain), eq(tested, member)) : both(std::move(chain), ne(tested, member));
  }
  return chain;
}

expression plan_maker::calculation(value_kind kind, const expressions& scope, std::size_t depth) {
  static constexpr pair_maker operations[] = {add, sub, mul, div};
  const auto of = [&](value_kind operand) { return any_expression(operand, scope, depth); };
  if (kind == value_kind::uint64) {
    return from_.below(2) == 0 ? oid(of(value_kind::reference)) : to(kind, of(numeric_kind()));
  }
  const std::size_t how = from_.below(4);
  if (how == 0) return neg(of(kind));
  if (how == 1) return to(kind, of(from_.below(3) == 0 ? any_kind() : numeric_kind()));
  return from_.of(operations)(of(kind), of(kind));
}

expression plan_maker::text(const expressions& scope, std::size_t depth) {
  const auto of_text = [&] { return any_expression(value_kind::text, scope, depth); };
  const std::size_t kind = from_.below(3);
  if (kind == 0) return concat({of_text(), of_text()});
  return kind == 1 ? like_prefix(of_text()) : to(value_kind::text, of_text());
}

expression plan_maker::leaf(value_kind kind, const expressions& scope) {
  expressions fitting;
  std::ranges::copy_if(scope, std::back_inserter(fitting),
                       [&](const expression& each) { return kind_of(each) == kind; });
  if (!fitting.empty() && from_.below(4) != 0) return from_.of(fitting);
  if (!from_.one_in(6) || kind == value_kind::null) return constant(any_value(kind, from_));
  parameters_.push_back(any_value(from_.one_in(4) ? value_kind::null : kind, from_));
  return parameter(parameters_.size() - 1, kind);
}

}  // namespace fuzz
