#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

constexpr std::string_view object_number = "object_number";

std::string spelled(const syntax::column& written) {
  std::string name;
  for (const syntax::name& each : written.parts) name += (name.empty() ? "" : ".") + std::string(each.text);
  return quoted(name);
}

bool is_table_of(const select_scope* scope, std::string_view name) {
  for (; scope != nullptr; scope = scope->outer) {
    for (const relation& each : scope->relations) {
      if (same_name(each.alias, name)) return true;
    }
  }
  return false;
}

}  // namespace

// Finds what the first names stand for: alias.column, column, or the alias of a table, which is the object itself.
// used: how many names that took.
std::optional<bound> binder::find_in(select_scope& where, const syntax::column& written, syntax::place at,
                                     std::size_t& used) const {
  const std::string_view first = written.parts[0].text;
  if (written.parts.size() > 1) {
    for (const relation& each : where.relations) {
      if (!same_name(each.alias, first)) continue;
      const std::string_view second = written.parts[1].text;
      used = 2;
      if (const auto column = each.find(second)) {
        if (each.has_two(second)) {
          throw error(error_kind::name, spelled(written) + " is ambiguous: two columns have that name", at.begin);
        }
        return each.read(*column, at);
      }
      if (each.table != nullptr && same_name(second, object_number)) {
        return bound{ovhost::oid(each.variable), value_kind::uint64, at, nullptr, {}, 2};
      }
      throw error(error_kind::name,
                  quoted(first) + " has no column " + quoted(second) +
                      suggest(second, each.table != nullptr ? each.table->column_names() : output_names(each)),
                  written.parts[1].at.begin);
    }
  }
  used = 1;
  for (const merged_column& each : where.merged) {
    if (same_name(each.name, first)) return each.value;
  }
  const relation* found = nullptr;
  for (const relation& each : where.relations) {
    if (!each.find(first)) continue;
    if (found != nullptr || each.has_two(first)) {
      throw error(error_kind::name,
                  quoted(first) + " is ambiguous: " +
                      (found != nullptr ? "it is a column of " + quoted(found->alias) + " and of " + quoted(each.alias)
                                        : "two columns have that name"),
                  at.begin);
    }
    found = &each;
  }
  if (found != nullptr) return found->read(*found->find(first), at);
  for (const relation& each : where.relations) {
    if (each.table != nullptr && same_name(each.alias, first)) {
      return bound{each.variable, value_kind::reference, at, each.table};
    }
  }
  if (same_name(first, object_number) && where.relations.size() == 1 && where.relations[0].table != nullptr) {
    return bound{ovhost::oid(where.relations[0].variable), value_kind::uint64, at, nullptr, {}, 2};
  }
  return std::nullopt;
}

std::vector<std::string_view> binder::output_names(const relation& of) {
  std::vector<std::string_view> names;
  for (std::size_t at = 0; at < of.width(); ++at) names.push_back(of.column_name(at));
  return names;
}

bound binder::bind_column(const syntax::column& written, syntax::place at, const expression_site& site) {
  for (select_scope* scope = site.scope; scope != nullptr; scope = scope->outer) {
    std::size_t used = 0;
    std::optional<bound> found = find_in(*scope, written, at, used);
    if (!found) continue;
    // A column without columns of its own gives way to a table of its name further out.
    const bool has_columns = used == written.parts.size() || found->kind == value_kind::reference;
    if (!has_columns && is_table_of(scope->outer, written.parts[0].text)) continue;
    if (scope->groups != nullptr) found = group_key_of(*scope, *std::move(found), at);
    for (select_scope* inner = site.scope; inner != scope; inner = inner->outer) {
      for_each_column(found->value, [&](std::uint32_t number) { inner->reads.push_back(number); });
    }
    for (; used < written.parts.size(); ++used) found = follow(*std::move(found), written.parts[used], site);
    found->at = at;
    return *std::move(found);
  }
  refuse_column(written, at, *site.scope);
}

void binder::refuse_column(const syntax::column& written, syntax::place at, const select_scope& scope) const {
  const std::string_view first = written.parts[0].text;
  if (written.parts.size() > 1) {
    std::vector<std::string_view> aliases;
    for (const select_scope* each = &scope; each != nullptr; each = each->outer) {
      for (const relation& of : each->relations) aliases.push_back(of.alias);
    }
    throw error(error_kind::name, "there is no table " + quoted(first) + " here" + suggest(first, aliases), at.begin);
  }
  std::vector<std::string_view> columns;
  for (const select_scope* each = &scope; each != nullptr; each = each->outer) {
    for (const relation& of : each->relations) {
      for (const std::string_view name : output_names(of)) columns.push_back(name);
    }
  }
  std::string message = "there is no column " + quoted(first);
  if (columns.empty()) message += " here: the query names no table before it";
  throw error(error_kind::name, message + suggest(first, columns), at.begin);
}

// Reads a property of the object that a reference refers to. The object becomes a variable, which is made once for all
// that follow the same reference.
bound binder::follow(bound from, const syntax::name& property, const expression_site& site) {
  if (from.kind != value_kind::reference || from.target == nullptr) {
    throw error(error_kind::type,
                "only a reference has columns of its own, and what stands before " + quoted(property.text) + " is " +
                    std::string(sql_name(from.kind)),
                property.at.begin);
  }
  const auto column = from.target->find_column(property.text);
  const bool is_number = same_name(property.text, object_number);
  if (!column && !is_number) {
    throw error(error_kind::name,
                "table " + quoted(from.target->name()) + " has no column " + quoted(property.text) +
                    suggest(property.text, from.target->column_names()),
                property.at.begin);
  }
  if (!column) return {ovhost::oid(std::move(from.value)), value_kind::uint64, property.at, nullptr, {}, 2};
  relation target;
  target.table = from.target;
  if (const auto* const own = std::get_if<physical_queryplan::variable>(&from.value)) {
    target.variable = *own;
  } else {
    target.variable = variable_for(from, site, property.at);
  }
  return target.read(*column, property.at);
}

physical_queryplan::variable binder::variable_for(const bound& reference, const expression_site& site,
                                                  syntax::place at) {
  for (select_scope* scope = site.scope; scope != nullptr; scope = scope->outer) {
    for (const auto& [followed, variable] : scope->followed) {
      if (same_expression(followed, reference.value)) return variable;
    }
  }
  select_scope& scope = *site.scope;
  const item_set needs = items_of(reference.value, scope.block, names_);
  item_list* const list = scope.groups == nullptr && scope.from != nullptr && needs.any() ? scope.from : site.list;
  if (list == nullptr) throw error(error_kind::unsupported, "a reference cannot be followed here", at.begin);
  const std::uint32_t number = new_item(scope, at);
  item made;
  made.kind = item_kind::computed;
  made.covers.set(number);
  made.needs = needs;
  physical_queryplan::variable variable(reference.target->info.object, reference.target->members,
                                        names_.make(reference.target->name(), {scope.block, number}));
  made.computed = assignment{reference.value, variable};
  list->items.push_back(std::move(made));
  if (list == scope.from) scope.followed.emplace_back(reference.value, variable);
  return variable;
}

// ---- Columns behind GROUP BY

std::optional<bound> binder::as_group_key(const syntax::expression& written, const expression_site& site) {
  const bool is_column = std::holds_alternative<syntax::column>(written.is);
  for (const group_key& each : site.scope->groups->keys) {
    if (is_column && !std::holds_alternative<syntax::column>(each.written->is)) continue;
    if (!is_same_tree(written, *each.written, site)) continue;
    bound made = each.column;
    made.at = written.at;
    return made;
  }
  return std::nullopt;
}

// What a column stands for before grouping: the value behind its first names, and the names that follow.
binder::resolved_column binder::resolve(const syntax::expression& written, select_scope& scope) const {
  const auto& column = std::get<syntax::column>(written.is);
  resolved_column made;
  std::size_t used = 0;
  if (const auto found = find_in(scope, column, written.at, used)) {
    made.value = found->value;
  } else {
    used = 0;
  }
  for (; used < column.parts.size(); ++used) {
    std::string& name = made.path.emplace_back(column.parts[used].text);
    for (char& each : name) each = fold_ascii(each);
  }
  return made;
}

// Inside a subquery, a column of the grouped SELECT around it stands for the group's key.
bound binder::group_key_of(const select_scope& where, const bound& column, syntax::place at) const {
  for (const group_key& each : where.groups->keys) {
    if (same_expression(each.before, column.value)) {
      bound made = each.column;
      made.at = at;
      return made;
    }
  }
  throw error(error_kind::name,
              "this column has many values in a group: put it into GROUP BY, or into an aggregate such as max()",
              at.begin);
}

}  // namespace ovsql
