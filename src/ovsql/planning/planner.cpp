#include "ovsql/planning/planner.hpp"

#include <iterator>
#include <utility>

#include "ovsql/binding/binder.hpp"
#include "ovsql/binding/stack_room.hpp"
#include "ovsql/planning/arrangement.hpp"

namespace ovsql {
namespace {

plan unite_range(std::vector<plan>& parts, std::size_t begin, std::size_t end) {
  if (end - begin == 1) return std::move(parts[begin]);
  const std::size_t middle = begin + (end - begin) / 2;
  plan left = unite_range(parts, begin, middle);
  return ovhost::unite(std::move(left), unite_range(parts, middle, end));
}

std::vector<expression> columns_of(const std::vector<assignment>& all) {
  std::vector<expression> columns;
  columns.reserve(all.size());
  for (const assignment& each : all) columns.push_back(read_of(each));
  return columns;
}

}  // namespace

plan unite_all(std::vector<plan>& parts) { return unite_range(parts, 0, parts.size()); }

assignment planner::name_value(const expression& of) const {
  const identifier id = names_.make("value", {});
  return ovhost::with_type_of(ovhost::kind_of(of), [&]<class T>() {
    return assignment{of, physical_queryplan::column_ref(physical_queryplan::computed<T>{id})};
  });
}

plan planner::make_body(select_body of, std::vector<order_key>& order, bool is_plain) const {
  const bool orders_by_scan = is_plain && !of.grouped && of.after.items.empty() && of.after.conditions.empty();
  std::vector<order_key> none;
  std::optional<plan> extreme = find_extreme(of);
  plan made =
      extreme ? *std::move(extreme)
              : arrangement(*this, std::move(of.from), of.block, {}).make(std::nullopt, orders_by_scan ? order : none);
  if (of.grouped) made = ovhost::group(std::move(of.aggregates), std::move(of.group_by), std::move(made));
  if (of.regrouped) made = ovhost::group(std::move(of.outer_aggregates), std::move(of.outer_group_by), std::move(made));
  if (!of.outer_extend.empty()) made = ovhost::extend(std::move(of.outer_extend), std::move(made));
  if (!of.after.items.empty() || !of.after.conditions.empty()) {
    arrangement after(*this, std::move(of.after), of.block, item_set().set());
    made = after.make(std::move(made), none);
  }
  if (!of.extend.empty()) made = ovhost::extend(std::move(of.extend), std::move(made));
  return made;
}

plan planner::make_body(values_body&& of) const {
  std::vector<plan> rows;
  rows.reserve(of.rows.size());
  for (auto& [each, needs] : of.rows) {
    if (!needs.items.empty()) {
      std::vector<order_key> none;
      const std::vector<expression> columns = columns_of(each);
      plan row = arrangement(*this, std::move(needs), of.block, {}).make(std::nullopt, none);
      rows.push_back(ovhost::project(columns, ovhost::extend(std::move(each), std::move(row))));
      continue;
    }
    plan row = ovhost::generate(std::move(each.front()));
    std::vector<assignment> rest(std::make_move_iterator(each.begin() + 1), std::make_move_iterator(each.end()));
    rows.push_back(rest.empty() ? std::move(row) : ovhost::extend(std::move(rest), std::move(row)));
  }
  return unite_all(rows);
}

plan planner::make_body(union_body of) const {
  const std::vector<expression> columns = columns_of(of.left_columns);
  plan left = ovhost::project(columns, ovhost::extend(std::move(of.left_columns), make(std::move(*of.left))));
  plan right = ovhost::project(columns, ovhost::extend(std::move(of.right_columns), make(std::move(*of.right))));
  return ovhost::unite(std::move(left), std::move(right));
}

plan planner::make(query of) const {
  require_room();
  plan made = std::visit(
      [&]<class Body>(Body& body) {
        if constexpr (std::is_same_v<Body, select_body>) {
          return make_body(std::move(body), of.order, !of.distinct && of.conditions.empty());
        } else {
          return make_body(std::move(body));
        }
      },
      of.body);
  if (of.distinct) made = ovhost::group(std::move(of.distinct_aggregates), *std::move(of.distinct), std::move(made));
  if (!of.conditions.empty()) made = ovhost::filter(all_of(std::move(of.conditions)), std::move(made));
  if (!of.order.empty()) made = ovhost::order(std::move(of.order), std::move(made));
  if (of.limit || of.offset) made = ovhost::limit(std::move(of.limit), std::move(of.offset), std::move(made));
  std::vector<expression> columns;
  columns.reserve(of.outputs.size() + 1);
  for (output& each : of.outputs) columns.push_back(std::move(each.column));
  if (of.mark) {
    columns.push_back(read_of(*of.mark));
    made = ovhost::extend({*std::move(of.mark)}, std::move(made));
  }
  return columns.empty() ? std::move(made) : ovhost::project(std::move(columns), std::move(made));
}

}  // namespace ovsql
