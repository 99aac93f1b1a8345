#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

using ovhost::lit;
using enum syntax::binary_operator;

syntax::binary_operator opposite(syntax::binary_operator op) {
  switch (op) {
    case equal:
      return not_equal;
    case not_equal:
      return equal;
    case less:
      return at_least;
    case at_most:
      return greater;
    case greater:
      return at_most;
    default:
      return less;
  }
}

// Whether a condition on the rows of a query may as well hold of the rows that they are made from.
bool takes_conditions(const query& of) {
  const auto* const body = std::get_if<select_body>(&of.body);
  return body != nullptr && !body->grouped && body->after.items.empty() && !of.distinct && !of.limit && !of.offset;
}

// What an output is computed from, where its column is computed last.
expression source_of(const query& of, const output& column) {
  const auto& body = std::get<select_body>(of.body);
  for (const assignment& each : body.extend) {
    if (same_expression(read_of(each), column.column)) return each.expression;
  }
  return column.column;
}

// A query that has a limit of its own is not given another; planning limits its rows where they are joined.
void keep_first(query& of) {
  if (of.limit) return;
  of.limit = lit(std::uint64_t{1});
  of.is_limited_to_one = true;
}

// As above, where it does not matter which row is the first.
void keep_any(query& of) {
  if (!of.limit && !of.offset) of.order.clear();
  keep_first(of);
}

}  // namespace

const output& binder::only_output(const query& of, syntax::place at) const {
  if (of.outputs.size() != 1) {
    throw error(error_kind::type,
                "a subquery that stands for a value has one column, not " + std::to_string(of.outputs.size()),
                at.begin);
  }
  return of.outputs.front();
}

// Notes what the query reads of the SELECT that it stands in.
void binder::take_reads(const query& from, item& into, const expression_site& site) {
  for (const std::uint32_t number : from.reads) {
    if (const auto item = names_.item_of(number, site.scope->block)) into.needs.set(*item);
  }
}

void binder::take_outputs(const query& from, column_owner owner) {
  for (const output& each : from.outputs) {
    for_each_column(each.column, [&](std::uint32_t number) { names_.give_to(number, owner); });
  }
}

std::uint32_t binder::add_query(query of, item_kind kind, syntax::place at, const expression_site& site) {
  if (site.list == nullptr) {
    throw error(error_kind::unsupported, "a subquery cannot stand in " + std::string(site.clause), at.begin);
  }
  const std::uint32_t number = new_item(*site.scope, at);
  item made;
  made.kind = kind;
  made.covers.set(number);
  take_reads(of, made, site);
  const column_owner owner = {site.scope->block, number};
  take_outputs(of, owner);
  if (of.mark) for_each_column(read_of(*of.mark), [&](std::uint32_t column) { names_.give_to(column, owner); });
  made.query = std::make_unique<query>(std::move(of));
  site.list->items.push_back(std::move(made));
  return number;
}

bound binder::bind_scalar_query(const syntax::query& written, syntax::place at, const expression_site& site) {
  query inner = bind_query(written, site.scope);
  const output value = only_output(inner, at);
  const bool is_one_row = inner.is_one_row;
  if (!is_one_row) keep_first(inner);
  add_query(std::move(inner), is_one_row ? item_kind::subquery : item_kind::optional, at, site);
  return {value.column, value.kind, at, value.target};
}

// A mark on the rows of a query; NULL where there is no row.
expression binder::mark(query& of) {
  of.mark = define("found", lit(true), value_kind::boolean, {});
  return read_of(*of.mark);
}

bound binder::bind_exists(const syntax::query& written, syntax::place at, const expression_site& site) {
  query inner = bind_query(written, site.scope);
  keep_any(inner);
  const expression found = mark(inner);
  inner.outputs.clear();
  add_query(std::move(inner), item_kind::optional, at, site);
  return {ovhost::is_not_null(found), value_kind::boolean, at, nullptr, {}, 2};
}

// The rows of a query whose value compares with the operand.
query binder::bind_matching(const syntax::query& written, const bound& operand, syntax::binary_operator op,
                            syntax::place at, const expression_site& site) {
  query inner = bind_query(written, site.scope);
  const output value = only_output(inner, at);
  for_each_column(operand.value, [&](std::uint32_t number) { inner.reads.push_back(number); });
  const bool below = takes_conditions(inner);
  bound column{below ? source_of(inner, value) : value.column, value.kind, at, value.target};
  bound test = compare(op, operand, std::move(column), at);
  if (below) {
    auto& body = std::get<select_body>(inner.body);
    body.from.conditions.push_back(std::move(test.value));
    keep_any(inner);
    inner.outputs.clear();
    body.extend.clear();
    return inner;
  }
  query outer;
  select_body body;
  body.block = names_.new_block();
  const column_owner owner = {body.block, 0};
  item rows;
  rows.kind = item_kind::subquery;
  rows.covers.set(0);
  take_outputs(inner, owner);
  outer.reads = inner.reads;
  rows.query = std::make_unique<query>(std::move(inner));
  body.from.items.push_back(std::move(rows));
  body.from.conditions.push_back(std::move(test.value));
  outer.body = std::move(body);
  keep_any(outer);
  return outer;
}

// Counts the rows of a query, and those whose value is not NULL.
std::pair<expression, expression> binder::count_rows(const syntax::query& written, syntax::place at,
                                                     const expression_site& site) {
  query inner = bind_query(written, site.scope);
  const output value = only_output(inner, at);
  query outer;
  outer.reads = inner.reads;
  outer.is_one_row = true;
  select_body body;
  body.block = names_.new_block();
  body.grouped = true;
  grouping groups{&body};
  item rows;
  rows.kind = item_kind::subquery;
  rows.covers.set(0);
  take_outputs(inner, {body.block, 0});
  rows.query = std::make_unique<query>(std::move(inner));
  body.from.items.push_back(std::move(rows));
  const bound all = add_count(groups, {}, at);
  const bound known = add_count(groups, {value.column}, at);
  outer.body = std::move(body);
  outer.outputs = {{"all", all.value, all.kind}, {"known", known.value, known.kind}};
  add_query(std::move(outer), item_kind::subquery, at, site);
  return {all.value, known.value};
}

// ANY finds a row that compares, ALL one that compares otherwise. Where there is none, a NULL on either side leaves it
// open, unless there is no row at all.
bound binder::bind_quantified(const syntax::expression& operand, syntax::binary_operator op, bool all,
                              const syntax::query& written, syntax::place at, const expression_site& site) {
  bound left = share_always(bind(operand, site), site);
  query matching = bind_matching(written, left, all ? opposite(op) : op, at, site);
  const expression found = mark(matching);
  add_query(std::move(matching), item_kind::optional, at, site);
  const auto [rows, known] = count_rows(written, at, site);
  const value_kind kind = value_kind::boolean;
  expression open = ovhost::either(ovhost::is_null(left.value), ovhost::lt(known, rows));
  expression none = ovhost::when_as(kind, std::move(open), ovhost::null(), lit(all));
  none = ovhost::when_as(kind, ovhost::eq(rows, lit(0)), lit(all), std::move(none));
  return {ovhost::when_as(kind, ovhost::is_not_null(found), lit(!all), std::move(none)), kind, at, nullptr, {}, 12};
}

// EXISTS and IN as conditions of their own keep a row or drop it, whatever else would tell false from NULL. Tells
// whether the condition is one of them.
bool binder::bind_as_test(const syntax::expression& written, const expression_site& site) {
  if (const auto* const exists = std::get_if<syntax::exists>(&written.is)) {
    query inner = bind_query(*exists->of, site.scope);
    keep_any(inner);
    inner.outputs.clear();
    if (inner.is_one_row) return true;
    add_query(std::move(inner), item_kind::test, written.at, site);
    return true;
  }
  const auto* const in = std::get_if<syntax::in_query>(&written.is);
  const auto* const any = std::get_if<syntax::quantified>(&written.is);
  if ((in == nullptr || in->negated) && (any == nullptr || any->all)) return false;
  const bound left = share_always(bind(in != nullptr ? *in->operand : *any->left, site), site);
  query inner =
      bind_matching(in != nullptr ? *in->of : *any->of, left, in != nullptr ? equal : any->op, written.at, site);
  add_query(std::move(inner), item_kind::test, written.at, site);
  return true;
}

}  // namespace ovsql
