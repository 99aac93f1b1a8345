#include "fuzz/any_plan.hpp"

#include <cstdio>
#include <cstdlib>

#include "ovhost/plan_words.hpp"

namespace tests::fuzz {

namespace {

using ovhost::expression;
using ovhost::value_kind;

constexpr std::size_t most_scans = 4;  // of up to six rows each

expressions both(expressions first, const expressions& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace

void plan_maker::print(const ovhost::plan& made) const {
  if (std::getenv("OV_FUZZ_PRINT") == nullptr) return;
  std::fputs(ovhost::as_tree(ovhost::describe(made, names_.names(), names_.columns())).c_str(), stderr);
}

relation plan_maker::any_relation(std::size_t steps, const expressions& outer) {
  if (steps == 0) return scanned(outer);
  const std::size_t kind = from_.below(9);
  if (kind < 3) return joined(steps - 1, outer);
  relation of = any_relation(steps - 1, outer);
  const expressions scope = both(of.columns, outer);
  switch (kind) {
    case 3:
      return {ovhost::filter(any_expression(value_kind::boolean, scope), std::move(of.made)), of.columns};
    case 4:
      return extended(std::move(of), outer);
    case 5:
      return grouped(std::move(of));
    case 6: {
      std::vector<ovhost::order_key> keys;
      for (std::size_t i = from_.below(4); i != 0; --i) {
        keys.push_back({from_.below(2) == 0, any_expression(any_kind(), scope, 1)});
      }
      return {ovhost::order(std::move(keys), std::move(of.made)), of.columns};
    }
    case 7: {
      std::optional<expression> limit;
      std::optional<expression> offset;
      if (!from_.one_in(3)) limit = any_expression(numeric_kind(), outer, 1);
      if (from_.one_in(3)) offset = any_expression(numeric_kind(), outer, 1);
      return {ovhost::limit(std::move(limit), std::move(offset), std::move(of.made)), of.columns};
    }
    default:
      return united(std::move(of), outer);
  }
}

relation plan_maker::scanned(const expressions& outer) {
  if (++scans_ > most_scans) {
    relation one;
    one.made = generated(outer, one.columns);
    return one;
  }
  const ovhost::table_variable variable = names_.over(from_.below(3) == 0 ? "q" : "p", fresh());
  const index& walked = from_.of(indexes());
  std::vector<ovhost::scan_range> ranges;
  for (std::size_t i = from_.below(walked.kinds.size() + 1); i != 0; --i) {
    ranges.push_back(any_range(walked.kinds[ranges.size()], outer));
  }
  relation made{ovhost::scan(variable, walked.name, std::move(ranges),
                             from_.below(2) == 0 ? ovhost::walk::ascending : ovhost::walk::descending),
                {variable}};
  for (const property& each : properties) made.columns.push_back(variable[each.name]);
  return made;
}

ovhost::scan_range plan_maker::any_range(value_kind kind, const expressions& outer) {
  namespace key = ovhost::key;
  using maker = ovhost::scan_range (*)(expression);
  static constexpr maker kinds[] = {key::equal, key::below, key::at_most, key::above, key::at_least, key::begins_with};
  ovhost::scan_range range = key::any();
  for (std::size_t i = from_.below(3); i != 0; --i) {
    const maker make = kinds[from_.below(kind == value_kind::text || mixes_types_ ? 6 : 5)];
    const bool is_number = kind != value_kind::text && kind <= value_kind::decimal && kind != value_kind::boolean;
    range = key::both(std::move(range), make(any_expression(is_number ? numeric_kind() : kind, outer, 1)));
  }
  return from_.one_in(16) ? key::null() : range;
}

relation plan_maker::extended(relation of, const expressions& outer) {
  std::vector<ovhost::assignment> added;
  for (std::size_t i = 1 + from_.below(2); i != 0; --i) {
    const auto column = names_.define(fresh(), any_expression(any_kind(), both(of.columns, outer)));
    added.push_back(column);
    of.columns.push_back(column);
  }
  return {ovhost::extend(std::move(added), std::move(of.made)), of.columns};
}

ovhost::plan plan_maker::generated(const expressions& scope, expressions& columns) {
  const auto column = names_.define(fresh(), any_expression(any_kind(), scope));
  columns.push_back(column);
  return ovhost::generate(column);
}

relation plan_maker::grouped(relation of) {
  std::vector<ovhost::aggregate> aggregates;
  std::vector<ovhost::assignment> keys;
  relation made;
  for (std::size_t i = from_.below(4); i != 0; --i) {
    const std::size_t kind = from_.below(8);
    const expression argument = any_expression(kind < 3 ? numeric_kind() : any_kind(), of.columns, 1);
    const auto column = kind == 0   ? names_.sum(fresh(), argument)
                        : kind == 1 ? names_.average(fresh(), argument)
                        : kind == 2 ? names_.maximum(fresh(), argument)
                        : kind == 3 ? names_.minimum(fresh(), argument)
                        : kind == 4 ? names_.count(fresh(), argument)
                        : kind == 5 ? names_.count_rows(fresh())
                        : kind == 6 ? names_.count_distinct(fresh(), argument)
                                    : names_.count_distinct_rows(fresh(), {argument, argument});
    aggregates.push_back(column);
    made.columns.push_back(column);
  }
  for (std::size_t i = from_.below(3); i != 0; --i) {
    const auto key = names_.define(fresh(), any_expression(any_kind(), of.columns, 1));
    keys.push_back(key);
    made.columns.push_back(key);
  }
  made.made = ovhost::group(std::move(aggregates), std::move(keys), std::move(of.made));
  return made;
}

relation plan_maker::joined(std::size_t steps, const expressions& outer) {
  relation left = any_relation(steps / 2, outer);
  const expressions seen = both(left.columns, outer);
  const std::size_t kind = from_.below(5);
  if (kind == 0) {
    expressions columns = left.columns;
    ovhost::plan computed = generated(seen, columns);
    return {ovhost::join(std::move(left.made), std::move(computed)), columns};
  }
  relation right = any_relation(steps / 2, kind == 1 ? outer : seen);
  const expressions columns = both(left.columns, right.columns);
  if (kind == 1) {
    std::optional<expression> condition;
    if (!from_.one_in(4)) condition = any_expression(value_kind::boolean, both(columns, outer), 2);
    return {ovhost::full_join(std::move(condition), std::move(left.made), std::move(right.made)), columns};
  }
  if (from_.below(2) == 0) {
    right.made = ovhost::filter(any_expression(value_kind::boolean, both(columns, outer), 2), std::move(right.made));
  }
  const auto join = kind == 2 ? ovhost::left_join : ovhost::join;
  return {join(std::move(left.made), std::move(right.made)), columns};
}

relation plan_maker::united(relation left, const expressions& outer) {
  relation right = scanned(outer);
  const value_kind kind = any_kind();
  const expression one = any_expression(kind, both(left.columns, outer), 1);
  expression other = any_expression(kind, both(right.columns, outer), 1);
  if (ovhost::kind_of(other) != ovhost::kind_of(one)) other = ovhost::null();  // the host's rule: both have one type
  const auto column = names_.define(fresh(), one);
  auto from_left = ovhost::project({column}, ovhost::extend({column}, std::move(left.made)));
  auto from_right = ovhost::project({column}, ovhost::extend({column.with(other)}, std::move(right.made)));
  return {ovhost::unite(std::move(from_left), std::move(from_right)), {column}};
}

value_kind plan_maker::numeric_kind() {
  using enum value_kind;
  static constexpr value_kind kinds[] = {int64, uint64, decimal, float64, float32};
  return from_.of(kinds);
}

expression plan_maker::any_expression(value_kind kind, const expressions& scope, std::size_t depth) {
  if (mixes_types_ && from_.one_in(40)) kind = any_kind();
  if (depth == 0 || from_.below(3) == 0) return leaf(kind, scope);
  if (from_.one_in(8) && kind != value_kind::null) {
    return ovhost::when_as(kind, condition(scope, depth - 1), any_expression(kind, scope, depth - 1),
                           any_expression(kind, scope, depth - 1));
  }
  switch (kind) {
    case value_kind::boolean:
      return condition(scope, depth - 1);
    case value_kind::text:
      return text(scope, depth - 1);
    case value_kind::set_specifier:
      return from_.below(4) == 0 ? ovhost::to(kind, any_expression(value_kind::text, scope, depth - 1))
                                 : leaf(kind, scope);
    case value_kind::binary:
    case value_kind::reference:
    case value_kind::null:
      return leaf(kind, scope);
    default:
      return calculation(kind, scope, depth - 1);
  }
}

expression plan_maker::condition(const expressions& scope, std::size_t depth) {
  using pair_maker = expression (*)(expression, expression);
  static constexpr pair_maker comparisons[] = {ovhost::eq, ovhost::ne, ovhost::le, ovhost::lt, ovhost::gt, ovhost::ge};
  static constexpr pair_maker connectives[] = {ovhost::both, ovhost::either, ovhost::exclusive};
  const auto of = [&](value_kind kind) { return any_expression(kind, scope, depth); };
  switch (from_.below(8)) {
    case 0: {
      const value_kind kind = any_kind();
      return from_.of(comparisons)(of(kind), of(kind));
    }
    case 1:
      return from_.of(connectives)(of(value_kind::boolean), of(value_kind::boolean));
    case 2:
      return ovhost::negated(of(value_kind::boolean));
    case 3:
      return from_.below(2) == 0 ? ovhost::is_null(of(any_kind())) : ovhost::is_not_null(of(any_kind()));
    case 4:
      return from_.below(2) == 0 ? ovhost::like(of(value_kind::text), of(value_kind::text))
                                 : ovhost::starts_with(of(value_kind::text), of(value_kind::text));
    case 5:
      return from_.below(3) == 0 ? ovhost::is_a(of(value_kind::reference), of(value_kind::set_specifier))
                                 : ovhost::is_a(of(value_kind::reference), from_.below(2) == 0 ? "p" : "q");
    case 6:
      return ovhost::to(value_kind::boolean, of(numeric_kind()));
    default:
      return from_.of(comparisons)(of(numeric_kind()), of(numeric_kind()));
  }
}

expression plan_maker::calculation(value_kind kind, const expressions& scope, std::size_t depth) {
  using pair_maker = expression (*)(expression, expression);
  static constexpr pair_maker operations[] = {ovhost::add, ovhost::sub, ovhost::mul, ovhost::div};
  if (kind == value_kind::uint64) {
    return from_.below(2) == 0 ? ovhost::oid(any_expression(value_kind::reference, scope, depth))
                               : ovhost::to(kind, any_expression(numeric_kind(), scope, depth));
  }
  switch (from_.below(4)) {
    case 0:
      return ovhost::neg(any_expression(kind, scope, depth));
    case 1:
      return ovhost::to(kind, any_expression(from_.below(3) == 0 ? any_kind() : numeric_kind(), scope, depth));
    default:
      return from_.of(operations)(any_expression(kind, scope, depth), any_expression(kind, scope, depth));
  }
}

expression plan_maker::text(const expressions& scope, std::size_t depth) {
  const auto of = [&](value_kind kind) { return any_expression(kind, scope, depth); };
  switch (from_.below(3)) {
    case 0:
      return ovhost::concat({of(value_kind::text), of(value_kind::text)});
    case 1:
      return ovhost::like_prefix(of(value_kind::text));
    default:
      return ovhost::to(value_kind::text, of(value_kind::text));
  }
}

expression plan_maker::leaf(value_kind kind, const expressions& scope) {
  std::vector<const expression*> fitting;
  for (const expression& each : scope) {
    if (ovhost::kind_of(each) == kind) fitting.push_back(&each);
  }
  if (!fitting.empty() && from_.below(4) != 0) return *from_.of(fitting);
  if (!from_.one_in(6) || kind == value_kind::null) return ovhost::constant(any_value(kind, from_));
  parameters_.push_back(any_value(from_.one_in(4) ? value_kind::null : kind, from_));
  return ovhost::parameter(parameters_.size() - 1, kind);
}

}  // namespace tests::fuzz
