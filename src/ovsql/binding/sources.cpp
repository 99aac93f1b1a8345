#include <algorithm>
#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/binding/stack_room.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

using enum syntax::join_kind;

item_set covered_by(const item_list& list) {
  item_set all;
  for (const item& each : list.items) all |= each.covers;
  return all;
}

}  // namespace

void binder::bind_source(const syntax::source& written, select_scope& scope, item_list& into) {
  require_room(written.at.begin);
  if (const auto* const join = std::get_if<syntax::joined_source>(&written.is)) {
    bind_join(*join, scope, into);
    return;
  }
  if (const auto* const inner = std::get_if<syntax::query_source>(&written.is)) {
    add_subquery(bind_query(*inner->of, inner->lateral ? &scope : scope.outer), written, written.alias.text, scope,
                 into);
    return;
  }
  const syntax::name& name = std::get<syntax::named_source>(written.is).table;
  const std::string_view alias = written.alias.text.empty() ? name.text : written.alias.text;
  if (auto common = bind_common_table(name.text, name.at)) {
    add_subquery(*std::move(common), written, alias, scope, into);
  } else if (const table* const found = catalog_.find_table(name.text)) {
    add_table(*found, written, alias, scope, into);
  } else if (const view* const view = catalog_.find_view(name.text)) {
    add_subquery(bind_view(*view, name.at), written, alias, scope, into);
  } else {
    std::vector<std::string_view> known;
    for (const auto& [each, of] : catalog_.tables()) known.push_back(each);
    for (const auto& [each, of] : catalog_.views()) known.push_back(each);
    throw error(error_kind::name, "there is no table " + quoted(name.text) + suggest(name.text, known), name.at.begin);
  }
}

void binder::add_relation(relation added, const syntax::source& written, select_scope& scope) const {
  if (written.columns.size() > added.width()) {
    throw error(error_kind::type,
                quoted(added.alias) + " has " + std::to_string(added.width()) + " columns, not " +
                    std::to_string(written.columns.size()),
                written.columns.front().at.begin);
  }
  const bool is_taken = std::any_of(scope.relations.begin(), scope.relations.end(), [&](const relation& each) {
    return !added.alias.empty() && same_name(each.alias, added.alias);
  });
  if (is_taken) {
    throw error(error_kind::name, "two tables of the query are called " + quoted(added.alias) + ": give one an alias",
                written.at.begin);
  }
  added.renamed = written.columns;
  scope.relations.push_back(std::move(added));
}

void binder::add_table(const table& of, const syntax::source& written, std::string_view alias, select_scope& scope,
                       item_list& into) {
  item made;
  made.kind = item_kind::table;
  made.table = &of;
  const std::uint32_t number = new_item(scope, written.at);
  made.covers.set(number);
  made.variable = physical_queryplan::variable(of.info.object, of.members, names_.make(alias, {scope.block, number}));
  relation seen;
  seen.alias = alias;
  seen.table = &of;
  seen.variable = made.variable;
  add_relation(std::move(seen), written, scope);
  into.items.push_back(std::move(made));
}

void binder::add_subquery(query of, const syntax::source& written, std::string_view alias, select_scope& scope,
                          item_list& into) {
  item made;
  made.kind = item_kind::subquery;
  const std::uint32_t number = new_item(scope, written.at);
  made.covers.set(number);
  take_reads(of, made, {&scope});
  // What it reads of queries further out is read by this one, too.
  for (const std::uint32_t column : of.reads) {
    if (!names_.item_of(column, scope.block)) scope.reads.push_back(column);
  }
  take_outputs(of, {scope.block, number});
  relation seen;
  seen.alias = alias;
  seen.outputs = of.outputs;
  add_relation(std::move(seen), written, scope);
  made.query = std::make_unique<query>(std::move(of));
  into.items.push_back(std::move(made));
}

void binder::bind_join(const syntax::joined_source& written, select_scope& scope, item_list& into) {
  if (written.kind == left || written.kind == right || written.kind == full) {
    bind_outer_join(written, scope, into);
    return;
  }
  const std::size_t first = scope.relations.size();
  bind_source(*written.left, scope, into);
  const std::size_t middle = scope.relations.size();
  bind_source(*written.right, scope, into);
  bind_on(written, first, middle, scope, into);
}

void binder::bind_outer_join(const syntax::joined_source& written, select_scope& scope, item_list& into) {
  item made;
  made.kind = written.kind == full ? item_kind::full_join : item_kind::left_join;
  made.left = std::make_unique<item_list>();
  made.right = std::make_unique<item_list>();
  const bool turned = written.kind == right;
  // References that an inner side follows are followed on that side. Those of the condition are followed for it alone:
  // where no row fits, they lead nowhere.
  item_list* const outside = scope.from;
  const std::size_t first = scope.relations.size();
  scope.from = turned ? made.right.get() : made.left.get();
  bind_source(*written.left, scope, *scope.from);
  const std::size_t middle = scope.relations.size();
  scope.from = turned ? made.left.get() : made.right.get();
  bind_source(*written.right, scope, *scope.from);
  const std::size_t followed = scope.followed.size();
  if (written.kind == full) {
    scope.from = nullptr;
    item_list on;
    bind_on(written, first, middle, scope, on);
    if (!on.items.empty()) {
      throw error(error_kind::unsupported, "the condition of a FULL JOIN cannot hold subqueries or follow references",
                  written.on->at.begin);
    }
    if (!on.conditions.empty()) made.condition = all_of(std::move(on.conditions));
  } else {
    scope.from = made.right.get();
    bind_on(written, first, middle, scope, *made.right);
  }
  scope.from = outside;
  scope.followed.erase(scope.followed.begin() + static_cast<std::ptrdiff_t>(followed), scope.followed.end());
  made.covers = covered_by(*made.left) | covered_by(*made.right);
  made.needs = needs_of(*made.left, scope.block) | needs_of(*made.right, scope.block);
  made.needs &= ~made.covers;
  into.items.push_back(std::move(made));
}

item_set binder::needs_of(const item_list& list, std::uint32_t block) const {
  item_set all;
  for (const item& each : list.items) all |= each.needs;
  for (const expression& each : list.conditions) all |= items_of(each, block, names_);
  return all;
}

// Conditions read both sides: followed references in them are computed where both are known.
void binder::bind_on(const syntax::joined_source& written, std::size_t first, std::size_t middle, select_scope& scope,
                     item_list& into) {
  const expression_site site = {&scope, written.kind == full ? nullptr : &into, nullptr, "ON"};
  std::vector<syntax::name> names(written.using_names.begin(), written.using_names.end());
  if (written.natural) names = common_columns(first, middle, scope);
  if (!names.empty()) bind_using(names, written.kind, first, middle, scope, into);
  if (written.on == nullptr) return;
  if (written.kind == full) {
    into.conditions.push_back(as_truth(bind(*written.on, site), "ON").value);
  } else {
    bind_conditions(*written.on, site);
  }
}

std::vector<syntax::name> binder::common_columns(std::size_t first, std::size_t middle, const select_scope& scope) {
  std::vector<syntax::name> names;
  for (std::size_t left = first; left < middle; ++left) {
    for (std::size_t column = 0; column < scope.relations[left].width(); ++column) {
      const std::string_view name = scope.relations[left].column_name(column);
      for (std::size_t right = middle; right < scope.relations.size(); ++right) {
        if (scope.relations[right].find(name)) names.push_back({name, {}});
      }
    }
  }
  return names;
}

void binder::bind_using(const std::vector<syntax::name>& names, syntax::join_kind kind, std::size_t first,
                        std::size_t middle, select_scope& scope, item_list& into) {
  const auto find = [&](const syntax::name& name, std::size_t begin, std::size_t end, std::string_view side) {
    for (std::size_t next = begin; next < end; ++next) {
      if (const auto column = scope.relations[next].find(name.text)) return std::pair(next, *column);
    }
    throw error(error_kind::name, "the " + std::string(side) + " side of the join has no column " + quoted(name.text),
                name.at.begin);
  };
  for (const syntax::name& each : names) {
    const auto a = find(each, first, middle, "left");
    const auto b = find(each, middle, scope.relations.size(), "right");
    const auto earlier = std::find_if(scope.merged.begin(), scope.merged.end(),
                                      [&](const merged_column& merged) { return same_name(merged.name, each.text); });
    bound one = earlier != scope.merged.end() ? earlier->value : scope.relations[a.first].read(a.second, each.at);
    bound other = scope.relations[b.first].read(b.second, each.at);
    into.conditions.push_back(compare(syntax::binary_operator::equal, one, other, each.at).value);
    bound merged = kind == right ? other : one;
    if (kind == full) {
      merged.kind = common_kind(one, other, each.at);
      merged.value = ovhost::when_as(merged.kind, ovhost::is_not_null(one.value), one.value, other.value);
      merged.size = 4;
    }
    if (earlier != scope.merged.end()) {
      earlier->value = std::move(merged);
      earlier->hides.push_back(b);
    } else {
      scope.merged.push_back({each.text, std::move(merged), {a, b}});
    }
  }
}

}  // namespace ovsql
