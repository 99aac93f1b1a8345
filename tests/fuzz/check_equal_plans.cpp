#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>

#include "fuzz/any_plan.hpp"
#include "fuzz/checks.hpp"
#include "ov_sql_executor/errors/db_exception.hpp"
#include "ovhost/statement.hpp"
#include "spelling.hpp"

namespace tests::fuzz {

namespace {

using ovhost::expression;
using ovhost::plan;
using ovhost::value_kind;
namespace key = ovhost::key;

// One of two plans. Both are drawn from the same decisions, since running a plan takes it.
struct side {
  explicit side(const choices& start) : from(start), maker(from, false) {}

  // Nothing where it fails: what the other side makes of the same rows is then its own affair.
  std::optional<std::vector<std::string>> rows_of(plan of, const expressions& columns) const {
    try {
      plan projected = ovhost::project(columns, std::move(of));
      maker.print(projected);
      const ovhost::statement planned(std::move(projected));
      std::vector<std::string> spelled;
      for (const auto& each : planned.rows(world::only().context(), maker.parameters())) spelled.push_back(spell(each));
      return spelled;
    } catch (const db_util::db_exception&) {
    } catch (const std::exception&) {
    }
    return std::nullopt;
  }

  choices from;
  plan_maker maker;
};

// Of the kinds that a result may have.
expressions shown(const expressions& columns) {
  expressions kept;
  for (const expression& each : columns) {
    const value_kind kind = ovhost::kind_of(each);
    if (kind != value_kind::set_specifier && kind != value_kind::null) kept.push_back(each);
  }
  return kept;
}

// Of the kinds whose values are equal only if they look alike: 0.0 and -0.0 do not.
expressions exact(const expressions& columns) {
  expressions kept;
  for (const expression& each : shown(columns)) {
    const value_kind kind = ovhost::kind_of(each);
    if (kind != value_kind::float64 && kind != value_kind::float32) kept.push_back(each);
  }
  return kept;
}

using rows = std::optional<std::vector<std::string>>;

void require_same(const char* what, rows left, rows right, bool in_order) {
  if (!left || !right) return;
  if (!in_order) {
    std::sort(left->begin(), left->end());
    std::sort(right->begin(), right->end());
  }
  if (left == right) return;
  std::fprintf(stderr, "broken: %s\n", what);
  for (const std::string& each : *left) std::fprintf(stderr, "  left  %s\n", each.c_str());
  for (const std::string& each : *right) std::fprintf(stderr, "  right %s\n", each.c_str());
  std::abort();
}

// A condition is true, false or NULL for each row.
void check_partition(const choices& start, std::size_t steps) {
  const auto part = [&](int which) {
    side one(start);
    relation of = one.maker.any_relation(steps);
    const expression test = one.maker.any_expression(value_kind::boolean, of.columns);
    if (which == 1) of.made = ovhost::filter(test, std::move(of.made));
    if (which == 2) of.made = ovhost::filter(ovhost::negated(test), std::move(of.made));
    if (which == 3) of.made = ovhost::filter(ovhost::is_null(test), std::move(of.made));
    return one.rows_of(std::move(of.made), shown(of.columns));
  };
  rows parts = part(1);
  for (const int which : {2, 3}) {
    const rows more = part(which);
    if (!parts || !more) return;
    parts->insert(parts->end(), more->begin(), more->end());
  }
  require_same("a condition parts the rows", part(0), parts, false);
}

// Ordered by everything that is shown: the other way round it is reversed.
void check_reversal(const choices& start, std::size_t steps) {
  const auto ordered = [&](bool ascending) {
    side one(start);
    relation of = one.maker.any_relation(steps);
    std::vector<ovhost::order_key> keys;
    for (const expression& each : exact(of.columns)) keys.push_back({ascending, each});
    return one.rows_of(ovhost::order(std::move(keys), std::move(of.made)), exact(of.columns));
  };
  rows down = ordered(false);
  if (down) std::reverse(down->begin(), down->end());
  require_same("descending is ascending reversed", ordered(true), down, true);
}

using pair_maker = expression (*)(expression, expression);
using range_maker = ovhost::scan_range (*)(expression);
struct bound_kind {
  pair_maker test;
  range_maker range;
};
constexpr bound_kind bounds[] = {{ovhost::eq, key::equal},    {ovhost::lt, key::below},
                                 {ovhost::le, key::at_most},  {ovhost::gt, key::above},
                                 {ovhost::ge, key::at_least}, {ovhost::starts_with, key::begins_with}};

// A range of an index is a filter over all of it, with literals and with what an outer row holds.
void check_range(const choices& start, std::size_t steps, bool is_inner) {
  const auto found = [&](bool by_range) {
    side one(start);
    std::optional<relation> outer;
    if (is_inner) outer = one.maker.any_relation(steps);
    const auto t = one.maker.names().over("p", "t");
    const bool is_text = one.from.below(3) == 0;
    const auto& [test, range] = bounds[one.from.below(is_text ? 6 : 5)];
    static constexpr value_kind kinds[] = {value_kind::int64, value_kind::decimal, value_kind::uint64,
                                           value_kind::float64};
    const value_kind kind = is_text ? value_kind::text : one.from.of(kinds);
    const expression bound = one.maker.any_expression(kind, outer ? outer->columns : expressions(), 1);
    const char* const column = is_text ? "t" : "n";
    const char* const index = is_text ? "by_t" : "by_n";
    plan inner = by_range ? ovhost::scan(t, index, {range(bound)})
                          : ovhost::filter(test(t[column], bound), ovhost::scan(t, "by_id"));
    expressions columns = outer ? shown(outer->columns) : expressions();
    columns.push_back(t);
    return one.rows_of(outer ? ovhost::join(std::move(outer->made), std::move(inner)) : std::move(inner), columns);
  };
  require_same("a range is a filter", found(true), found(false), false);
}

void check_groups(const choices& start, std::size_t steps) {
  const auto counted = [&](bool by_groups) {
    side one(start);
    relation of = one.maker.any_relation(steps);
    const value_kind kind{one.from.below(ovhost::value_kind_count)};
    const expression each = one.maker.any_expression(kind, of.columns, 1);
    const auto key = one.maker.names().define("key", each);
    const auto total = by_groups ? one.maker.names().count_rows("n") : one.maker.names().count_distinct("n", each);
    if (by_groups) of.made = ovhost::group({}, {key}, std::move(of.made));
    const auto signed_total = one.maker.names().define("signed", ovhost::to(value_kind::int64, total));
    return one.rows_of(ovhost::extend({signed_total}, ovhost::group({total}, {}, std::move(of.made))), {signed_total});
  };
  require_same("there is a group for each distinct value", counted(true), counted(false), true);
}

void check_full_join(const choices& start, std::size_t steps) {
  const auto joined = [&](bool turned) {
    side one(start);
    relation left = one.maker.any_relation(steps);
    relation right = one.maker.any_relation(steps / 2);
    expressions columns = left.columns;
    columns.insert(columns.end(), right.columns.begin(), right.columns.end());
    const expression test = one.maker.any_expression(value_kind::boolean, columns);
    if (turned) std::swap(left.made, right.made);
    return one.rows_of(ovhost::full_join(test, std::move(left.made), std::move(right.made)), shown(columns));
  };
  require_same("a full join has no direction", joined(true), joined(false), false);
}

void check_inner_filter(const choices& start, std::size_t steps) {
  const auto joined = [&](bool inside) {
    side one(start);
    relation left = one.maker.any_relation(steps);
    relation right = one.maker.any_relation(steps / 2, left.columns);
    expressions columns = left.columns;
    columns.insert(columns.end(), right.columns.begin(), right.columns.end());
    const expression test = one.maker.any_expression(value_kind::boolean, columns);
    if (inside) right.made = ovhost::filter(test, std::move(right.made));
    plan join = ovhost::join(std::move(left.made), std::move(right.made));
    return one.rows_of(inside ? std::move(join) : ovhost::filter(test, std::move(join)), shown(columns));
  };
  require_same("a join's filter may stand on either side of it", joined(true), joined(false), true);
}

void check_slice(const choices& start, std::size_t steps) {
  const auto taken = [&](bool by_limit) {
    side one(start);
    const std::size_t offset = one.from.below(4);
    const std::size_t limit = one.from.below(6);
    relation of = one.maker.any_relation(steps);
    if (by_limit) of.made = ovhost::limit(ovhost::lit(limit), ovhost::lit(offset), std::move(of.made));
    rows found = one.rows_of(std::move(of.made), shown(of.columns));
    if (by_limit || !found) return found;
    const std::size_t first = std::min(offset, found->size());
    const std::size_t last = std::min(first + limit, found->size());
    return rows(std::vector<std::string>(found->begin() + static_cast<std::ptrdiff_t>(first),
                                         found->begin() + static_cast<std::ptrdiff_t>(last)));
  };
  require_same("a limit cuts out a slice", taken(true), taken(false), true);
}

}  // namespace

void check_equal_plans(std::span<const std::uint8_t> input) {
  choices from(input);
  world::only().refill(from);
  const std::size_t kind = from.below(8);
  const std::size_t steps = from.below(4);
  switch (kind) {
    case 0:
      return check_partition(from, steps);
    case 1:
      return check_reversal(from, steps);
    case 2:
    case 3:
      return check_range(from, steps, kind == 3);
    case 4:
      return check_groups(from, steps);
    case 5:
      return check_full_join(from, steps);
    case 6:
      return check_inner_filter(from, steps);
    default:
      return check_slice(from, steps);
  }
}

}  // namespace tests::fuzz
