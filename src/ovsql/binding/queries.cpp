#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/binding/stack_room.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

using ovhost::lit;

}  // namespace

query binder::bind_query(const syntax::query& written, select_scope* outer) {
  require_room(written.at.begin);
  // What a view, a common table or an IN holds is bound for each use, and uses multiply.
  constexpr std::size_t most_queries = 20000;
  if (++queries_ > most_queries) {
    throw error(error_kind::limit,
                "the statement has more than 20,000 queries, those of views and common tables included",
                written.at.begin);
  }
  if (written.with.empty()) return bind_body(written, outer);
  std::vector<bool> is_used(written.with.size());
  const common_tables tables{written.with.data(), written.with.size(), common_, outer, &is_used};
  const common_tables* const before = std::exchange(common_, &tables);
  query made = bind_body(written, outer);
  // What nobody reads has to make sense, too.
  for (std::size_t next = is_used.size(); next-- > 0;) {
    if (!is_used[next]) bind_common_table(tables, next, written.with[next].table.at);
  }
  common_ = before;
  return made;
}

query binder::bind_body(const syntax::query& written, select_scope* outer) {
  if (const auto* const select = std::get_if<syntax::select>(&written.body)) {
    query made = bind_select(*select, written, outer);
    bind_limits(written, made);
    return made;
  }
  query made = std::holds_alternative<syntax::values>(written.body)
                   ? bind_values(std::get<syntax::values>(written.body), outer)
                   : bind_set_operation(std::get<syntax::set_operation>(written.body), outer);
  bind_order(written, {}, made, nullptr);
  bind_limits(written, made);
  return made;
}

// NULL as a limit is none, as an offset 0.
void binder::bind_limits(const syntax::query& written, query& into) {
  const auto bind_count = [this](const syntax::expression* of, std::string_view clause) -> std::optional<expression> {
    if (of == nullptr || std::holds_alternative<syntax::null_literal>(of->is)) return std::nullopt;
    bound count = as_number(bind_constant(*of, clause), clause);
    const auto* const written_parameter = std::get_if<syntax::parameter>(&of->is);
    if (written_parameter != nullptr &&
        names_.is_null_parameter(names_.parameter(*written_parameter, numbered_parameters_))) {
      return std::nullopt;
    }
    if (count.digits.starts_with('-')) {
      throw error(error_kind::value, std::string(clause) + " is negative", of->at.begin);
    }
    return std::move(count.value);
  };
  into.limit = bind_count(written.limit, "LIMIT");
  into.offset = bind_count(written.offset, "OFFSET");
  if (into.limit || into.offset) into.is_one_row = false;
}

void binder::add_order_key(const syntax::order_item& written, expression key, query& into) {
  // NULL is below every value.
  const bool nulls_first = written.nulls_first.value_or(!written.descending);
  if (nulls_first == written.descending) into.order.push_back({!nulls_first, ovhost::is_null(key)});
  into.order.push_back({!written.descending, std::move(key)});
}

query binder::bind_values(const syntax::values& written, select_scope* outer) {
  values_body body;
  body.block = names_.new_block();
  select_scope empty{outer, body.block};
  const std::size_t width = written.rows.front().size();
  std::vector<std::vector<bound>> rows;
  std::vector<value_kind> kinds(width, value_kind::null);
  for (const syntax::expression_list& row : written.rows) {
    if (row.size() != width) {
      throw error(
          error_kind::type,
          "the rows of VALUES have different lengths: " + std::to_string(width) + " and " + std::to_string(row.size()),
          row.front()->at.begin);
    }
    std::vector<bound>& made = rows.emplace_back();
    const expression_site site = {&empty, &body.rows.emplace_back().needs, nullptr, "VALUES"};
    for (std::size_t at = 0; at < width; ++at) {
      made.push_back(bind(*row[at], site));
      kinds[at] = common_kind(kinds[at], made.back().kind, row[at]->at);
    }
  }
  query result;
  for (std::size_t at = 0; at < width; ++at) {
    const std::string_view name = names_.keep("column" + std::to_string(at + 1));
    const assignment column = define(name, ovhost::null(), kinds[at], {});
    result.outputs.push_back({name, read_of(column), kinds[at]});
    for (std::size_t row = 0; row < rows.size(); ++row) {
      body.rows[row].columns.push_back({promoted(std::move(rows[row][at]), kinds[at]), column.column});
    }
  }
  result.body = std::move(body);
  result.reads = std::move(empty.reads);
  return result;
}

// Rows are told apart by grouping; where it matters, a tag says which side each comes from.
query binder::bind_set_operation(const syntax::set_operation& written, select_scope* outer) {
  using enum syntax::set_operator;
  if (written.op != union_of && written.all) {
    throw error(error_kind::unsupported, "EXCEPT ALL and INTERSECT ALL are not supported", written.sign.begin);
  }
  query left = bind_query(*written.left, outer);
  query right = bind_query(*written.right, outer);
  if (left.outputs.size() != right.outputs.size()) {
    throw error(error_kind::type,
                "the two sides have different numbers of columns: " + std::to_string(left.outputs.size()) + " and " +
                    std::to_string(right.outputs.size()),
                written.sign.begin);
  }
  query made;
  union_body body;
  std::vector<assignment> groups;
  for (std::size_t at = 0; at < left.outputs.size(); ++at) {
    output& a = left.outputs[at];
    output& b = right.outputs[at];
    const value_kind kind = common_kind(a.kind, b.kind, written.sign);
    const assignment column = define(a.name, ovhost::null(), kind, {});
    body.left_columns.push_back({promoted({a.column, a.kind}, kind), column.column});
    body.right_columns.push_back({promoted({b.column, b.kind}, kind), column.column});
    const bool groups_rows = written.op != union_of || !written.all;
    const assignment group = groups_rows ? define(a.name, read_of(column), kind, {}) : column;
    if (groups_rows) groups.push_back(group);
    made.outputs.push_back({a.name, read_of(group), kind, a.target == b.target ? a.target : nullptr});
  }
  made.reads = left.reads;
  made.reads.insert(made.reads.end(), right.reads.begin(), right.reads.end());
  body.left = std::make_unique<query>(std::move(left));
  body.right = std::make_unique<query>(std::move(right));
  if (written.op != union_of) tag_sides(written.op == except, body, made);
  if (written.op != union_of || !written.all) made.distinct = std::move(groups);
  made.body = std::move(body);
  return made;
}

// A group has rows of the left side if its least tag is 0, of the right one if its greatest is 1.
void binder::tag_sides(bool except, union_body& body, query& into) {
  const assignment tag = define("side", lit(0), value_kind::int64, {});
  body.left_columns.push_back(tag);
  body.right_columns.push_back({lit(1), tag.column});
  const auto extreme = [&](bool greatest) {
    into.distinct_aggregates.push_back(extreme_of(greatest, read_of(tag)));
    return read_of_aggregate(into.distinct_aggregates.back());
  };
  if (except) {
    into.conditions.push_back(ovhost::eq(extreme(true), lit(0)));
  } else {
    into.conditions.push_back(ovhost::eq(extreme(false), lit(0)));
    into.conditions.push_back(ovhost::eq(extreme(true), lit(1)));
  }
}

std::optional<query> binder::bind_common_table(std::string_view name, syntax::place at) {
  for (const common_tables* each = common_; each != nullptr; each = each->outer) {
    for (std::size_t next = each->count; next-- > 0;) {
      if (same_name(each->first[next].table.text, name)) return bind_common_table(*each, next, at);
    }
  }
  return std::nullopt;
}

// It sees the common tables before it, and what encloses its WITH.
query binder::bind_common_table(const common_tables& among, std::size_t number, syntax::place at) {
  (*among.is_used)[number] = true;
  const common_tables visible{among.first, number, among.outer, among.scope, among.is_used};
  const common_tables* const before = std::exchange(common_, &visible);
  query made = bind_query(*among.first[number].of, among.scope);
  common_ = before;
  rename(made, among.first[number].columns, at);
  return made;
}

query binder::bind_view(const view& of, syntax::place at) {
  constexpr std::size_t deepest = 100;
  if (++views_ > deepest) throw error(error_kind::limit, "views are nested too deeply", at.begin);
  if (views_ == 1) view_at_ = at;
  const common_tables* const before = std::exchange(common_, nullptr);
  const std::string_view text = std::exchange(text_, of.text);
  query made;
  try {
    made = bind_query(*of.definition->of, nullptr);
  } catch (const error& inside) {
    // Of views in each other only the innermost is told.
    const std::string_view message = inside.what();
    const bool is_told = message.starts_with("in the view ");
    throw error(inside.kind(),
                (is_told ? "" : "in the view " + quoted(of.definition->view.text) + ": ") + std::string(message),
                at.begin);
  }
  common_ = before;
  text_ = text;
  --views_;
  rename(made, of.definition->columns, at);
  return made;
}

void binder::rename(query& of, syntax::name_list names, syntax::place at) {
  if (names.size() > of.outputs.size()) {
    throw error(
        error_kind::type,
        "there are " + std::to_string(names.size()) + " names for " + std::to_string(of.outputs.size()) + " columns",
        at.begin);
  }
  for (std::size_t next = 0; next < names.size(); ++next) of.outputs[next].name = names[next].text;
}

}  // namespace ovsql
