#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/any_plan.hpp"
#include "fuzz/checks.hpp"
#include "ov_sql_executor/errors/db_exception.hpp"
#include "ovhost/plans/statement.hpp"
#include "spelling.hpp"

namespace fuzz {

namespace {

using ovhost::expression;
using ovhost::plan;
using ovhost::value_kind;
namespace key = ovhost::key;

using rows = std::optional<std::vector<std::string>>;

// One of two plans. Both are drawn from the same decisions, since running a plan takes it.
struct side {
  side(const choices& start, std::size_t count) : from(start), maker(from, false), steps(count) {}

  relation drawn() { return maker.any_relation(steps); }
  expression test_of(const expressions& columns) { return maker.any_expression(value_kind::boolean, columns); }

  // Nothing where it fails: what the other side makes of the same rows is then its own affair.
  rows rows_of(plan of, const expressions& columns) const {
    try {
      plan projected = ovhost::project(columns, std::move(of));
      maker.print(projected);
      const ovhost::statement planned(std::move(projected));
      std::vector<std::string> spelled;
      for (const auto& each : planned.rows(world::only().context(), maker.parameters()))
        spelled.push_back(tests::spell(each));
      return spelled;
    } catch (const db_util::db_exception&) {
    } catch (const std::exception&) {
    }
    return std::nullopt;
  }

  choices from;
  plan_maker maker;
  std::size_t steps;
};

// Of the kinds whose values are equal only if they look alike: 0.0 and -0.0 do not.
expressions exact(const expressions& columns) {
  expressions kept = shown(columns);
  std::erase_if(kept, [](const expression& each) {
    return ovhost::kind_of(each) == value_kind::float64 || ovhost::kind_of(each) == value_kind::float32;
  });
  return kept;
}

void require_same(const char* what, rows left, rows right, bool in_order) {
  if (!left || !right) return;
  if (!in_order) std::sort(left->begin(), left->end());
  if (!in_order) std::sort(right->begin(), right->end());
  if (left == right) return;
  std::fprintf(stderr, "broken: %s\n", what);
  for (const std::string& each : *left) std::fprintf(stderr, "  left  %s\n", each.c_str());
  for (const std::string& each : *right) std::fprintf(stderr, "  right %s\n", each.c_str());
  std::abort();
}

// The rows for which a condition is true, false and NULL.
rows parted(side& one, bool in_parts) {
  rows all = std::vector<std::string>();
  for (int part = in_parts ? 1 : 0; all && part < (in_parts ? 4 : 1); ++part) {
    side again(one.from, one.steps);
    relation of = again.drawn();
    const expression test = again.test_of(of.columns);
    if (part == 1) of.made = ovhost::filter(test, std::move(of.made));
    if (part == 2) of.made = ovhost::filter(ovhost::negated(test), std::move(of.made));
    if (part == 3) of.made = ovhost::filter(ovhost::is_null(test), std::move(of.made));
    const rows more = again.rows_of(std::move(of.made), shown(of.columns));
    if (!more) return std::nullopt;
    all->insert(all->end(), more->begin(), more->end());
  }
  return all;
}

// Ordered by everything that is shown.
rows ordered(side& one, bool ascending) {
  relation of = one.drawn();
  std::vector<ovhost::order_key> keys;
  for (const expression& each : exact(of.columns)) keys.push_back({ascending, each});
  rows found = one.rows_of(ovhost::order(std::move(keys), std::move(of.made)), exact(of.columns));
  if (found && !ascending) std::reverse(found->begin(), found->end());
  return found;
}

struct bound_kind {
  expression (*test)(expression, expression);
  ovhost::scan_range (*range)(expression);
};
constexpr bound_kind bounds[] = {{ovhost::eq, key::equal},    {ovhost::lt, key::below},
                                 {ovhost::le, key::at_most},  {ovhost::gt, key::above},
                                 {ovhost::ge, key::at_least}, {ovhost::starts_with, key::begins_with}};

// With literals, and inside a join with what an outer row holds.
rows bounded(side& one, bool by_range, std::optional<relation> outer) {
  const expressions seen = outer ? outer->columns : expressions();
  const auto t = one.maker.names().over("p", "t");
  const bool is_text = one.from.below(3) == 0;
  const auto& [test, range] = bounds[one.from.below(is_text ? 6 : 5)];
  static constexpr value_kind kinds[] = {value_kind::int64, value_kind::decimal, value_kind::uint64,
                                         value_kind::float64};
  const value_kind kind = is_text ? value_kind::text : one.from.of(kinds);
  const expression bound = one.maker.any_expression(kind, seen, 1);
  plan inner = by_range ? ovhost::scan(t, is_text ? "by_t" : "by_n", {range(bound)})
                        : ovhost::filter(test(t[is_text ? "t" : "n"], bound), ovhost::scan(t, "by_id"));
  return one.rows_of(outer ? ovhost::join(std::move(outer->made), std::move(inner)) : std::move(inner),
                     joined(shown(seen), {t}));
}
rows ranged(side& one, bool by_range) { return bounded(one, by_range, std::nullopt); }
rows ranged_inside(side& one, bool by_range) { return bounded(one, by_range, one.drawn()); }

rows counted(side& one, bool by_groups) {
  relation of = one.drawn();
  ovhost::query& names = one.maker.names();
  const value_kind kind{one.from.below(ovhost::value_kind_count)};
  const expression each = one.maker.any_expression(kind, of.columns, 1);
  const auto key = names.define("key", each);
  const auto total = by_groups ? names.count_rows("n") : names.count_distinct("n", each);
  if (by_groups) of.made = ovhost::group({}, {key}, std::move(of.made));
  const auto signed_total = names.define("signed", ovhost::to(value_kind::int64, total));
  return one.rows_of(ovhost::extend({signed_total}, ovhost::group({total}, {}, std::move(of.made))), {signed_total});
}

rows full_joined(side& one, bool turned) {
  relation left = one.drawn();
  relation right = one.maker.any_relation(one.steps / 2);
  const expressions columns = joined(left.columns, right.columns);
  const expression test = one.test_of(columns);
  if (turned) std::swap(left.made, right.made);
  return one.rows_of(ovhost::full_join(test, std::move(left.made), std::move(right.made)), shown(columns));
}

rows filtered_join(side& one, bool inside) {
  relation left = one.drawn();
  relation right = one.maker.any_relation(one.steps / 2, left.columns);
  const expressions columns = joined(left.columns, right.columns);
  const expression test = one.test_of(columns);
  if (inside) right.made = ovhost::filter(test, std::move(right.made));
  plan join = ovhost::join(std::move(left.made), std::move(right.made));
  return one.rows_of(inside ? std::move(join) : ovhost::filter(test, std::move(join)), shown(columns));
}

rows sliced(side& one, bool by_limit) {
  const std::size_t offset = one.from.below(4);
  const std::size_t limit = one.from.below(6);
  relation of = one.drawn();
  if (by_limit) of.made = ovhost::limit(ovhost::lit(limit), ovhost::lit(offset), std::move(of.made));
  const rows found = one.rows_of(std::move(of.made), shown(of.columns));
  if (by_limit || !found) return found;
  const auto first = found->begin() + static_cast<std::ptrdiff_t>(std::min(offset, found->size()));
  const auto left = static_cast<std::size_t>(found->end() - first);
  return std::vector<std::string>(first, first + static_cast<std::ptrdiff_t>(std::min(limit, left)));
}

constexpr struct {
  const char* says;
  rows (*found)(side&, bool);
  bool in_order;
} laws[] = {{"a condition parts the rows", parted, false},
            {"descending is ascending reversed", ordered, true},
            {"a range is a filter", ranged, false},
            {"a range is a filter inside a join", ranged_inside, false},
            {"there is a group for each distinct value", counted, true},
            {"a full join has no direction", full_joined, false},
            {"a join's filter may stand on either side of it", filtered_join, true},
            {"a limit cuts out a slice", sliced, true}};

}  // namespace

void check_equal_plans(std::span<const std::uint8_t> input) {
  choices from(input);
  world::only().refill(from);
  const auto& [says, found, in_order] = from.of(laws);
  const std::size_t steps = from.below(4);
  side left(from, steps);
  side right(from, steps);
  require_same(says, found(left, true), found(right, false), in_order);
}

}  // namespace fuzz
