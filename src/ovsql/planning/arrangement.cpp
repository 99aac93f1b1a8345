#include "ovsql/planning/arrangement.hpp"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/binding/bound.hpp"
#include "ovsql/binding/stack_room.hpp"
#include "ovsql/errors/error.hpp"
#include "ovsql/planning/value_list.hpp"

namespace ovsql {
namespace {

using physical_queryplan::find_operation;

constexpr double subquery_rows = 100;
constexpr double keeping_cost = 2;       // of a row, beside reading it
constexpr double lookup_cost = 2;        // of a key in an index
constexpr double equality_share = 0.1;   // of the rows that an equality lets pass
constexpr double condition_share = 0.5;  // of those that another condition does
constexpr double most_listed = 10;       // rows of a table for each value of a list that is looked up
constexpr std::size_t most_starts = 8;   // with more items, only the smallest is tried as the first

bool is_equality(const expression& of) { return std::holds_alternative<physical_queryplan::Equality>(of); }

bool is_source(item_kind kind) {
  return kind == item_kind::table || kind == item_kind::subquery || kind == item_kind::left_join ||
         kind == item_kind::full_join;
}

// One row, of nothing that matters.
plan one_row() {
  return ovhost::generate({ovhost::lit(true), physical_queryplan::column_ref(physical_queryplan::computed<bool>{})});
}

// Whether walking an index gives rows in an order. pinned: for each leading key column, whether it has one value only.
bool gives_order(const index& through, std::size_t pinned, const item& of, const std::vector<order_key>& order,
                 bool& ascending) {
  std::size_t at = 0;
  std::optional<bool> turned;
  for (const order_key& each : order) {
    const auto column = column_of(each.expression, of);
    if (!column) return false;
    const auto is_it = [&](const index_key_column& key) { return key.column == *column; };
    if (std::any_of(through.key.begin(), through.key.begin() + static_cast<std::ptrdiff_t>(pinned), is_it)) continue;
    if (pinned + at >= through.key.size()) return false;
    const index_key_column& key = through.key[pinned + at++];
    if (!is_it(key)) return false;
    if (turned && *turned != (key.ascending != each.ascending)) return false;
    turned = key.ascending != each.ascending;
  }
  ascending = !turned.value_or(false);
  return true;
}

plan limited_to_one(plan rows) { return ovhost::limit(ovhost::lit(std::uint64_t{1}), std::nullopt, std::move(rows)); }

}  // namespace

arrangement::arrangement(const planner& by, item_list list, std::uint32_t block, const item_set& known)
    : by_(by), block_(block), items_(std::move(list.items)), is_placed_(items_.size()), known_(known) {
  // What is placed here is known once it is placed: one of them may read another.
  for (const item& each : items_) known_ &= ~each.covers;
  conditions_.reserve(list.conditions.size());
  for (expression& each : list.conditions) {
    const item_set reads = items_of(each, block_, by_.names_);
    conditions_.push_back({std::move(each), reads});
  }
  if (items_.size() > most_starts) note_readers();
}

// With many items, an estimate looks only at the conditions that read its item.
void arrangement::note_readers() {
  for (const item& each : items_) {
    std::vector<std::size_t>& readers = readers_[each.covers._Find_first()];
    for (std::size_t at = 0; at < conditions_.size(); ++at) {
      if ((conditions_[at].reads & each.covers).any()) readers.push_back(at);
    }
  }
}

plan arrangement::make(std::optional<plan> base, std::vector<order_key>& order) {
  require_room();
  std::vector<order_key> none;
  // Nested loops keep the order of the only table that they read.
  const auto is_other = [](const item& each) {
    const bool is_one_row = each.kind == item_kind::subquery && each.query->is_one_row;
    return is_source(each.kind) && each.kind != item_kind::table && !is_one_row;
  };
  const auto tables =
      std::count_if(items_.begin(), items_.end(), [](const item& each) { return each.kind == item_kind::table; });
  const bool is_single = !base && tables == 1 && std::none_of(items_.begin(), items_.end(), is_other);
  for (std::size_t count = 0; count < items_.size(); ++count) {
    const std::size_t next = choose(base.has_value());
    is_placed_[next] = true;
    base = add(std::move(base), std::move(items_[next]), is_single ? order : none);
  }
  if (!base) base = one_row();
  plan made = test(*std::move(base), {}, take_conditions({}));
  const bool is_done =
      std::all_of(conditions_.begin(), conditions_.end(), [](const condition& each) { return each.is_used; });
  if (!is_done) throw std::logic_error("a condition reads what nothing makes");
  return made;
}

// ---- The order

// Rows first, then what is computed from them, then subqueries. What a condition waits for comes as soon as it can; a
// query that reads nothing of this list comes first, so that it runs once.
std::size_t arrangement::choose(bool has_base) const {
  const auto can_place = [this](std::size_t at) { return !is_placed_[at] && contains(known_, items_[at].needs); };
  if (!has_base) {
    for (std::size_t at = 0; at < items_.size(); ++at) {
      const item& each = items_[at];
      if (!can_place(at) || each.needs.any() || items_.size() == 1) continue;
      const bool runs_once = each.kind == item_kind::subquery && each.query->is_one_row;
      if (runs_once || each.kind == item_kind::optional || each.kind == item_kind::test) return at;
    }
  }
  for (std::size_t at = 0; at < items_.size(); ++at) {
    if (items_[at].kind != item_kind::computed || !can_place(at)) continue;
    const bool is_waited_for = std::any_of(conditions_.begin(), conditions_.end(), [&](const condition& each) {
      return !each.is_used && (each.reads & items_[at].covers).any() &&
             contains(known_ | items_[at].covers, each.reads);
    });
    if (is_waited_for && has_base) return at;
  }
  if (const auto source = choose_source(has_base)) return *source;
  for (const item_kind kind : {item_kind::computed, item_kind::test, item_kind::optional, item_kind::subquery}) {
    for (std::size_t at = 0; at < items_.size(); ++at) {
      if (items_[at].kind == kind && can_place(at)) return at;
    }
  }
  throw error(error_kind::unsupported, "the tables of the query depend on each other in a circle");
}

std::optional<std::size_t> arrangement::choose_source(bool has_base) const {
  std::vector<std::size_t> candidates;
  for (std::size_t at = 0; at < items_.size(); ++at) {
    const item& each = items_[at];
    if (is_placed_[at] || !is_source(each.kind) || !contains(known_, each.needs)) continue;
    const bool waits = each.kind == item_kind::subquery && each.query->is_one_row && each.needs.any();
    if (!waits) candidates.push_back(at);
  }
  if (candidates.empty()) return std::nullopt;
  if (candidates.size() == 1) return candidates.front();
  const bool tries_starts = !has_base && candidates.size() <= most_starts;
  std::size_t best = candidates.front();
  double least = std::numeric_limits<double>::infinity();
  for (const std::size_t at : candidates) {
    const step made = estimate(items_[at], rows_, known_);
    const double cost = tries_starts ? cost_from(at) : has_base ? made.cost + made.rows : made.rows;
    if (cost < least) {
      least = cost;
      best = at;
    }
  }
  return best;
}

// What joining everything costs when one item is the first and the cheapest next one is taken each time.
double arrangement::cost_from(std::size_t first) const {
  std::vector<bool> placed = is_placed_;
  item_set known = known_;
  double rows = 1;
  double cost = 0;
  std::optional<std::size_t> next = first;
  while (next) {
    const step made = estimate(items_[*next], rows, known);
    cost += made.cost;
    rows = made.rows;
    placed[*next] = true;
    known |= items_[*next].covers;
    next = std::nullopt;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t at = 0; at < items_.size(); ++at) {
      if (placed[at] || !is_source(items_[at].kind) || !contains(known, items_[at].needs)) continue;
      const step other = estimate(items_[at], rows, known);
      if (other.cost + other.rows >= least) continue;
      least = other.cost + other.rows;
      next = at;
    }
  }
  return cost;
}

double arrangement::item_rows(const item& of) const {
  switch (of.kind) {
    case item_kind::table:
      return by_.row_count_(*of.table);
    case item_kind::left_join:
    case item_kind::full_join: {
      double rows = 1;
      for (const item& each : of.left->items) rows = std::max(rows, item_rows(each));
      return rows;
    }
    default:
      return of.query != nullptr && of.query->is_one_row ? 1 : subquery_rows;
  }
}

arrangement::step arrangement::estimate(const item& of, double outer_rows, const item_set& known) const {
  const std::vector<const condition*> conditions = known_conditions(of, known);
  double rows = std::max(1.0, item_rows(of));
  double read = rows;
  bool by_index = false;
  bool by_hash = false;
  std::vector<bool> is_bound(conditions.size());
  if (of.kind == item_kind::table) {
    const access_path path = choose_path(*of.table, find_bounds(of, conditions, known), rows);
    by_index = !path.bounds.empty();
    read = rows = path.rows;
    for (const auto& column : path.bounds) {
      for (const column_bound& each : column) is_bound[each.condition] = true;
    }
  }
  double local = 1;
  for (std::size_t at = 0; at < conditions.size(); ++at) {
    if (is_bound[at]) continue;
    const bool joins = !contains(of.covers, conditions[at]->reads);
    if (joins && is_hashed(*conditions[at], of.covers)) {
      by_hash = true;
    } else {
      local *= is_equality(conditions[at]->test) ? equality_share : condition_share;
    }
  }
  rows = std::max(rows * local, 1.0);
  if (outer_rows <= 1 && !by_hash) return {rows, by_index ? lookup_cost + read : read};
  if (by_index) {
    return {std::max(1.0, outer_rows * (by_hash ? std::max(1.0, rows * equality_share) : rows)),
            outer_rows * (lookup_cost + read)};
  }
  if (by_hash) {
    return {outer_rows, read * (1 + keeping_cost) + 2 * outer_rows};
  }
  return {outer_rows * rows, read * keeping_cost + outer_rows * rows};
}

// ---- Conditions

std::vector<const condition*> arrangement::known_conditions(const item& next, const item_set& known) const {
  std::vector<const condition*> found;
  const item_set all = known | next.covers;
  const auto add = [&](const condition& each) {
    if (!each.is_used && contains(all, each.reads)) found.push_back(&each);
  };
  if (const auto readers = readers_.find(next.covers._Find_first()); readers != readers_.end()) {
    for (const std::size_t at : readers->second) add(conditions_[at]);
  } else {
    for (const condition& each : conditions_) add(each);
  }
  return found;
}

std::vector<condition*> arrangement::take_conditions(const item& next) {
  std::vector<condition*> taken;
  for (condition& each : conditions_) {
    if (each.is_used || !contains(known_ | next.covers, each.reads)) continue;
    each.is_used = true;
    taken.push_back(&each);
  }
  return taken;
}

// An equality between something of the inner rows and something else.
bool arrangement::is_hashed(const condition& of, const item_set& own) const {
  if (!is_equality(of.test)) return false;
  const auto& operands = find_operation(of.test)->operands;
  const item_set left = items_of(operands[0], block_, by_.names_);
  const item_set right = items_of(operands[1], block_, by_.names_);
  const bool left_inner = left.any() && contains(own, left);
  const bool right_inner = right.any() && contains(own, right);
  return (left_inner && (right & own).none()) || (right_inner && (left & own).none());
}

plan arrangement::test(plan rows, const item_set& own, const std::vector<condition*>& conditions) const {
  std::vector<expression> local;
  std::vector<expression> equalities;
  std::vector<expression> others;
  for (condition* each : conditions) {
    const bool is_local = own.any() && each->reads.any() && contains(own, each->reads);
    auto& into = is_local ? local : is_hashed(*each, own) ? equalities : others;
    into.push_back(std::move(each->test));
  }
  if (!local.empty()) rows = ovhost::filter(all_of(std::move(local)), std::move(rows));
  equalities.insert(equalities.end(), std::make_move_iterator(others.begin()), std::make_move_iterator(others.end()));
  if (equalities.empty()) return rows;
  return ovhost::filter(all_of(std::move(equalities)), std::move(rows));
}

// ---- Plans

plan arrangement::add(std::optional<plan> base, item next, std::vector<order_key>& order) {
  std::vector<condition*> conditions = take_conditions(next);
  const item_set own = next.covers;
  const auto join_with = [&](plan inner) {
    return base ? ovhost::join(*std::move(base), std::move(inner)) : std::move(inner);
  };
  plan made;
  switch (next.kind) {
    case item_kind::table:
      rows_ = estimate(next, rows_, known_).rows;
      made = join_with(read_table(std::move(next), conditions, order));
      break;
    case item_kind::subquery:
      hand_down(*next.query, conditions);
      made = join_with(test(by_.make(std::move(*next.query)), own, conditions));
      break;
    case item_kind::left_join:
      made = join_with(read_left_join(std::move(next), conditions));
      break;
    case item_kind::full_join: {
      std::vector<order_key> none;
      plan left = arrangement(by_, std::move(*next.left), block_, known_).make(std::nullopt, none);
      plan right = arrangement(by_, std::move(*next.right), block_, known_).make(std::nullopt, none);
      plan both = ovhost::full_join(std::move(next.condition), std::move(left), std::move(right));
      made = join_with(test(std::move(both), {}, conditions));
      break;
    }
    case item_kind::optional:
    case item_kind::test: {
      const bool is_limited = next.query->is_limited_to_one;
      plan inner = by_.make(std::move(*next.query));
      if (!is_limited) inner = limited_to_one(std::move(inner));
      if (!base) base = one_row();
      made = next.kind == item_kind::test ? ovhost::join(*std::move(base), std::move(inner))
                                          : ovhost::left_join(*std::move(base), std::move(inner));
      made = test(std::move(made), {}, conditions);
      break;
    }
    case item_kind::computed:
      made = ovhost::extend({*std::move(next.computed)}, base ? *std::move(base) : one_row());
      made = test(std::move(made), {}, conditions);
      break;
  }
  known_ |= own;
  return made;
}

// Looks each value of an IN list up in an index, where one begins with the column.
std::optional<plan> arrangement::read_listed(const item& next, std::vector<condition*>& conditions) const {
  const double rows = by_.row_count_(*next.table);
  for (auto each = conditions.begin(); each != conditions.end(); ++each) {
    std::optional<value_list> list = find_value_list((*each)->test, next);
    if (!list || static_cast<double>(list->values.size()) * most_listed > rows) continue;
    const index* through = nullptr;
    for (const index& other : next.table->indexes) {
      if (other.key.front().column != list->column) continue;
      if (through == nullptr || (other.unique && other.key.size() == 1)) through = &other;
    }
    if (through == nullptr) continue;
    const assignment listed = by_.name_value(list->values.front());
    std::vector<plan> values;
    for (expression& value : list->values) values.push_back(ovhost::generate({std::move(value), listed.column}));
    plan found = physical_queryplan::QueryPlan::Scan{
        next.variable, through->object, {ovhost::key::equal(read_of(listed))}, true};
    conditions.erase(each);
    return ovhost::join(unite_all(values), std::move(found));
  }
  return std::nullopt;
}

// Tests conditions on a subquery's columns inside it, where an index may serve them: those on columns that it has from
// its tables as they are. Grouping, DISTINCT and limits are in the way of that.
void arrangement::hand_down(query& to, std::vector<condition*>& conditions) const {
  auto* const body = std::get_if<select_body>(&to.body);
  if (body == nullptr || body->grouped || to.distinct || to.limit || to.offset) return;
  item_set inside;
  for (const item& each : body->from.items) inside |= each.covers;
  const auto is_made_inside = [&](std::uint32_t number) {
    const auto made_by = by_.names_.item_of(number, body->block);
    return made_by && inside.test(*made_by);
  };
  const auto is_computed_last = [&](std::uint32_t number) {
    return std::any_of(body->extend.begin(), body->extend.end(),
                       [&](const assignment& each) { return column_number(read_of(each)) == number; });
  };
  std::vector<condition*> left;
  for (condition* each : conditions) {
    bool reads = false;
    bool fits = true;
    for_each_column(each->test, [&](std::uint32_t number) {
      reads = reads || is_made_inside(number);
      const bool is_inner = by_.names_.item_of(number, body->block).has_value();
      fits = fits && !is_computed_last(number) && (!is_inner || is_made_inside(number));
    });
    if (reads && fits) {
      body->from.conditions.push_back(std::move(each->test));
    } else {
      left.push_back(each);
    }
  }
  conditions = std::move(left);
}

plan arrangement::read_table(item next, std::vector<condition*> conditions, std::vector<order_key>& order) {
  const std::vector<const condition*> given(conditions.begin(), conditions.end());
  const std::vector<column_bound> bounds = find_bounds(next, given, known_);
  access_path path = choose_path(*next.table, bounds, by_.row_count_(*next.table));
  if (path.bounds.empty()) {
    if (auto listed = read_listed(next, conditions)) return test(*std::move(listed), next.covers, conditions);
  }
  bool ascending = true;
  if (!order.empty()) serve_order(next, path, order, ascending);
  std::vector<bool> is_exact(conditions.size());
  for (const auto& column : path.bounds) {
    for (const column_bound& each : column) is_exact[each.condition] = true;
  }
  plan rows = physical_queryplan::QueryPlan::Scan{next.variable, path.through->object, ranges_of(path), ascending};
  std::vector<condition*> left;
  for (std::size_t at = 0; at < conditions.size(); ++at) {
    if (!is_exact[at]) left.push_back(conditions[at]);
  }
  return test(std::move(rows), next.covers, left);
}

void arrangement::serve_order(const item& next, access_path& path, std::vector<order_key>& order,
                              bool& ascending) const {
  if (!path.bounds.empty()) {
    std::size_t pinned = 0;
    for (const auto& column : path.bounds) {
      const auto comparison = column.front().comparison;
      pinned += comparison == column_bound::kind::equal || comparison == column_bound::kind::null ? 1 : 0;
    }
    if (gives_order(*path.through, pinned, next, order, ascending)) order.clear();
    return;
  }
  for (const index& each : next.table->indexes) {
    if (!gives_order(each, 0, next, order, ascending)) continue;
    path.through = &each;
    order.clear();
    return;
  }
}

// Conditions on the left side alone are tested there; the others see the NULLs of rows without a partner.
plan arrangement::read_left_join(item next, std::vector<condition*>& conditions) {
  std::vector<order_key> none;
  item_set left_own;
  for (const item& each : next.left->items) left_own |= each.covers;
  std::vector<condition*> above;
  for (condition* each : conditions) {
    if (each->reads.any() && contains(left_own | known_, each->reads) && (each->reads & left_own).any()) {
      next.left->conditions.push_back(std::move(each->test));
    } else {
      above.push_back(each);
    }
  }
  plan left = arrangement(by_, std::move(*next.left), block_, known_).make(std::nullopt, none);
  plan right = arrangement(by_, std::move(*next.right), block_, known_ | left_own).make(std::nullopt, none);
  return test(ovhost::left_join(std::move(left), std::move(right)), {}, above);
}

}  // namespace ovsql
