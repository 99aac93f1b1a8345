#include <algorithm>
#include <charconv>
#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/aggregate_calls.hpp"
#include "ovsql/syntax/same.hpp"

namespace ovsql {
namespace {

// The name of a result column: its alias, the column's own name, the function's, or what is written.
std::string_view name_of(const syntax::select_item& item) {
  if (!item.alias.text.empty()) return item.alias.text;
  if (const auto* const column = std::get_if<syntax::column>(&item.value->is)) {
    return column->parts.back().text;
  }
  if (const auto* const call = std::get_if<syntax::call>(&item.value->is)) return call->function.text;
  if (std::holds_alternative<syntax::conditional>(item.value->is)) return "case";
  return "?column?";
}

// The column that a whole number in GROUP BY or ORDER BY stands for, from 0.
std::optional<std::size_t> position_of(const syntax::expression& written, std::size_t count, std::string_view clause) {
  const auto* const number = std::get_if<syntax::number_literal>(&written.is);
  if (number == nullptr) return std::nullopt;
  std::size_t position = 0;
  const char* const end = number->digits.data() + number->digits.size();
  const auto [stop, status] = std::from_chars(number->digits.data(), end, position);
  if (status != std::errc() || stop != end || position == 0 || position > count) {
    throw error(error_kind::name,
                std::string(clause) + " " + std::string(number->digits) + " is no column of the result, which has " +
                    std::to_string(count),
                written.at.begin);
  }
  return position - 1;
}

bool is_plain_name(const syntax::expression& written, std::string_view& name) {
  const auto* const column = std::get_if<syntax::column>(&written.is);
  if (column == nullptr || column->parts.size() != 1) return false;
  name = column->parts[0].text;
  return true;
}

}  // namespace

query binder::bind_select(const syntax::select& written, const syntax::query& whole, select_scope* outer) {
  query made;
  made.body = select_body();
  auto& body = std::get<select_body>(made.body);
  body.block = names_.new_block();
  select_scope scope{outer, body.block};
  scope.from = &body.from;
  for (const syntax::source* each : written.from) bind_source(*each, scope, body.from);
  const expression_site rows = {&scope, &body.from, nullptr, "WHERE"};
  if (written.where != nullptr) bind_conditions(*written.where, rows);

  grouping groups{&body};
  groups.written = &written;
  groups.scope = &scope;
  body.grouped =
      !written.group_by.empty() || written.having != nullptr || syntax::has_aggregates(written, whole.order_by);
  if (body.grouped) {
    bind_groups(written, groups, {&scope, &body.from, nullptr, "GROUP BY"});
    scope.groups = &groups;
  }
  const expression_site results = {&scope, &body.after, body.grouped ? &groups : nullptr, "SELECT"};
  std::vector<const syntax::expression*> trees;
  made.outputs = bind_items(written, results, trees);
  if (written.having != nullptr) bind_conditions(*written.having, results);
  settle_outputs(made, written.distinct, scope);
  bind_order(whole, trees, made, &results);
  if (body.grouped) regroup(groups);
  made.is_one_row = body.grouped && written.group_by.empty() && written.having == nullptr;
  made.reads = std::move(scope.reads);
  return made;
}

// What is no column of this SELECT's rows becomes one. Columns of enclosing queries do, too: they must be NULL where
// this query has no row.
void binder::settle_outputs(query& of, bool distinct, const select_scope& scope) {
  auto& body = std::get<select_body>(of.body);
  if (distinct) of.distinct.emplace();
  for (output& each : of.outputs) {
    if (distinct) {
      of.distinct->push_back(define(each.name, std::move(each.column), each.kind, {body.block, 0}));
      each.column = read_of(of.distinct->back());
    } else if (each.kind == value_kind::null || !is_own_column(each.column, scope)) {
      body.extend.push_back(define(each.name, std::move(each.column), each.kind, {body.block, 0}));
      each.column = read_of(body.extend.back());
    }
  }
}

bool binder::is_own_column(const expression& of, const select_scope& scope) const {
  if (physical_queryplan::find_operation(of) != nullptr) return false;
  if (std::holds_alternative<physical_queryplan::literal>(of)) return false;
  bool own = true;
  for_each_column(of, [&](std::uint32_t number) {
    // The keys of an enclosing SELECT are nobody's, too.
    const bool is_outer = std::find(scope.reads.begin(), scope.reads.end(), number) != scope.reads.end();
    own = own && !is_outer && (names_.is_free(number) || names_.item_of(number, scope.block));
  });
  return own;
}

std::vector<output> binder::bind_items(const syntax::select& written, const expression_site& site,
                                       std::vector<const syntax::expression*>& trees) {
  std::vector<output> outputs;
  for (const syntax::select_item& each : written.items) {
    if (const auto* const all = std::get_if<syntax::all_columns>(&each.value->is)) {
      expand_all(*all, each.value->at, *site.scope, outputs);
      trees.resize(outputs.size(), nullptr);
      continue;
    }
    bound value = bind(*each.value, site);
    outputs.push_back({name_of(each), std::move(value.value), value.kind, value.target});
    trees.push_back(each.value);
  }
  return outputs;
}

void binder::expand_all(const syntax::all_columns& written, syntax::place at, const select_scope& scope,
                        std::vector<output>& outputs) const {
  const auto add = [&](std::string_view name, bound value) {
    if (scope.groups != nullptr) value = group_key_of(scope, value, at);
    outputs.push_back({name, std::move(value.value), value.kind, value.target});
  };
  const bool all = written.of.empty();
  const auto is_hidden = [&](std::size_t relation, std::size_t column) {
    for (const merged_column& each : scope.merged) {
      for (const auto& hidden : each.hides) {
        if (hidden == std::pair(relation, column)) return true;
      }
    }
    return false;
  };
  if (all) {
    for (const merged_column& each : scope.merged) add(each.name, each.value);
  }
  bool found = false;
  for (std::size_t number = 0; number < scope.relations.size(); ++number) {
    const relation& each = scope.relations[number];
    if (!all && !same_name(each.alias, written.of.back().text)) continue;
    found = true;
    for (std::size_t column = 0; column < each.width(); ++column) {
      if (!all || !is_hidden(number, column)) add(each.column_name(column), each.read(column, at));
    }
  }
  if (found) return;
  if (all) throw error(error_kind::name, "* needs a table: the query has no FROM", at.begin);
  throw error(error_kind::name, "there is no table " + quoted(written.of.back().text) + " here", at.begin);
}

// Keys are columns before anything else, then result columns by name or number, then expressions.
void binder::bind_groups(const syntax::select& written, grouping& groups, const expression_site& site) {
  for (const syntax::expression* each : written.group_by) {
    const syntax::expression* key = each;
    std::string_view name;
    if (const auto position = position_of(*each, written.items.size(), "GROUP BY")) {
      key = written.items[*position].value;
    } else if (is_plain_name(*each, name)) {
      std::size_t used = 0;
      const bool is_column = find_in(*site.scope, std::get<syntax::column>(each->is), each->at, used).has_value();
      for (const syntax::select_item& item : written.items) {
        if (!is_column && same_name(item.alias.text, name)) key = item.value;
      }
    }
    bound value = bind(*key, site);
    expression before = value.value;
    const assignment column = define("key", std::move(value.value), value.kind, {});
    groups.body->group_by.push_back(column);
    groups.keys.push_back({key, std::move(before), {read_of(column), value.kind, value.at, value.target}});
  }
}

void binder::bind_conditions(const syntax::expression& written, const expression_site& site) {
  const auto* const chain = std::get_if<syntax::chain>(&written.is);
  const bool is_key = site.scope->groups != nullptr && as_group_key(written, site).has_value();
  if (chain != nullptr && chain->op == syntax::chain_operator::conjunction && !is_key) {
    for (const syntax::expression* each : chain->operands) bind_conditions(*each, site);
    return;
  }
  if (bind_as_test(written, site)) return;
  add_conditions(as_truth(bind(written, site), site.clause).value, site.list->conditions);
}

// The parts of an AND are conditions of their own: BETWEEN is one, too.
void binder::add_conditions(expression of, std::vector<expression>& into) {
  auto* const both = std::get_if<physical_queryplan::And>(&of);
  if (both == nullptr) {
    into.push_back(std::move(of));
    return;
  }
  for (expression& each : both->operands) add_conditions(std::move(each), into);
}

void binder::bind_order(const syntax::query& written, const std::vector<const syntax::expression*>& trees, query& into,
                        const expression_site* site) {
  for (const syntax::order_item& each : written.order_by) {
    std::string_view name;
    std::optional<std::size_t> found = position_of(*each.key, into.outputs.size(), "ORDER BY");
    if (!found && is_plain_name(*each.key, name)) {
      for (std::size_t at = into.outputs.size(); at-- > 0;) {
        if (same_name(into.outputs[at].name, name)) found = at;
      }
    }
    for (std::size_t at = 0; at < trees.size() && !found; ++at) {
      if (trees[at] != nullptr && site != nullptr && is_same_tree(*trees[at], *each.key, *site)) found = at;
    }
    if (found) {
      add_order_key(each, into.outputs[*found].column, into);
      continue;
    }
    if (site == nullptr || into.distinct) {
      throw error(error_kind::name,
                  site == nullptr ? "ORDER BY of a UNION, EXCEPT, INTERSECT or VALUES takes columns of the result"
                                  : "ORDER BY beside DISTINCT takes columns of the result",
                  each.key->at.begin);
    }
    add_order_key(each, bind(*each.key, *site).value, into);
  }
}

bool binder::is_same_tree(const syntax::expression& left, const syntax::expression& right,
                          const expression_site& site) const {
  return syntax::same(left, right, text_, [&](const syntax::expression& a, const syntax::expression& b) {
    const resolved_column x = resolve(a, *site.scope);
    const resolved_column y = resolve(b, *site.scope);
    if (x.value.has_value() != y.value.has_value() || x.path != y.path) return false;
    return !x.value || same_expression(*x.value, *y.value);
  });
}

}  // namespace ovsql
