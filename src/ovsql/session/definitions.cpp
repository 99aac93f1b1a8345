#include <algorithm>
#include <cctype>
#include <set>

#include "ovsql/binding/binder.hpp"
#include "ovsql/session/cells.hpp"
#include "ovsql/session/run_errors.hpp"
#include "ovsql/session/statement_state.hpp"
#include "ovsql/syntax/parser.hpp"

namespace ovsql {
namespace {

// The index that every table has, to be read as a whole.
constexpr std::string_view whole_index = "objects";

[[noreturn]] void refuse(const std::string& message, syntax::place at) {
  throw error(error_kind::name, message, at.begin);
}

const table& find_table(const database_state& db, const syntax::name& name) {
  if (const table* const found = db.catalog.find_table(name.text)) return *found;
  if (db.catalog.find_view(name.text) != nullptr) refuse(quoted(name.text) + " is a view, not a table", name.at);
  std::vector<std::string_view> known;
  for (const auto& [each, of] : db.catalog.tables()) known.push_back(each);
  refuse("there is no table " + quoted(name.text) + suggest(name.text, known), name.at);
}

// Whether the name is free. One that is taken is an error, unless IF NOT EXISTS is said.
bool is_free(const database_state& db, const syntax::name& name, bool if_not_exists) {
  const bool is_table = db.catalog.find_table(name.text) != nullptr;
  if (!is_table && db.catalog.find_view(name.text) == nullptr) return true;
  if (if_not_exists) return false;
  refuse("there is a " + std::string(is_table ? "table " : "view ") + quoted(name.text) + " already", name.at);
}

std::variant<value_kind, ovhost::refers_to> type_of(const database_state& db, const syntax::create_table& of,
                                                    const syntax::column_definition& column) {
  if (!column.references.text.empty()) {
    if (same_name(column.references.text, of.table.text)) return ovhost::refers_to{std::string(of.table.text)};
    return ovhost::refers_to{find_table(db, column.references).name()};
  }
  // A type that is a table's name is a reference as well.
  if (const table* const target = db.catalog.find_table(column.type.words)) return ovhost::refers_to{target->name()};
  if (column.type.words.empty()) return value_kind::text;
  const auto kind = kind_named(column.type.words);
  if (!kind) refuse("there is no type " + quoted(column.type.words), column.type.at);
  return *kind;
}

struct key_definition {
  std::vector<std::string> columns;
  bool primary;
  syntax::place at;
};

// A key's column, by the name that the table has for it, its own or its base's.
std::string key_column(const database_state& db, const syntax::create_table& of, const syntax::name& written) {
  for (const syntax::column_definition& each : of.columns) {
    if (same_name(each.column.text, written.text)) return std::string(each.column.text);
  }
  const table* const base = of.inherits.text.empty() ? nullptr : db.catalog.find_table(of.inherits.text);
  const auto inherited = base != nullptr ? base->find_column(written.text) : std::nullopt;
  if (!inherited) refuse("the table has no column " + quoted(written.text), written.at);
  return base->columns[*inherited].property.name;
}

std::vector<key_definition> keys_of(const database_state& db, const syntax::create_table& of) {
  std::vector<key_definition> keys;
  for (const syntax::column_definition& each : of.columns) {
    if (each.primary_key || each.unique)
      keys.push_back({{std::string(each.column.text)}, each.primary_key, each.column.at});
  }
  for (const syntax::key_constraint& each : of.keys) {
    key_definition key{{}, each.primary, each.columns.front().at};
    for (const syntax::name& column : each.columns) key.columns.push_back(key_column(db, of, column));
    keys.push_back(std::move(key));
  }
  for (auto each = keys.begin(); each != keys.end(); ++each) {
    const auto same = [&](const key_definition& other) { return other.columns == each->columns; };
    if (std::any_of(keys.begin(), each, same)) refuse("two keys have the same columns", each->at);
  }
  const auto primary = std::count_if(keys.begin(), keys.end(), [](const key_definition& each) { return each.primary; });
  if (primary > 1) refuse("a table has one PRIMARY KEY", keys.back().at);
  return keys;
}

void define_keys(database_state& db, const std::string& name, const std::vector<key_definition>& keys) {
  db.schema->define_index({name, std::string(whole_index), {{"object_number"}}});
  for (const key_definition& each : keys) {
    ovhost::index_definition index{name, each.primary ? "primary_key" : "unique", {}, true};
    for (const std::string& column : each.columns) {
      if (!each.primary) index.name += "_" + column;
      index.columns.push_back({column});
    }
    db.schema->define_index(index);
  }
}

value_kind kind_of_column(const std::variant<value_kind, ovhost::refers_to>& type) {
  const value_kind* const kind = std::get_if<value_kind>(&type);
  return kind != nullptr ? *kind : value_kind::reference;
}

void check_key_types(const ovhost::table_definition& made, const std::vector<key_definition>& keys) {
  for (const key_definition& key : keys) {
    for (const std::string& column : key.columns) {
      for (const ovhost::member_definition& each : made.members) {
        if (!same_name(each.name, column) || !is_floating(kind_of_column(each.type))) continue;
        throw error(error_kind::unsupported, "a floating number cannot be a key: column " + quoted(column),
                    key.at.begin);
      }
    }
  }
}

void check_default(const database_state& db, const table& of, const syntax::column_definition& column,
                   const column_rule& rule) {
  if (!rule.default_value) return;
  try {
    row_of_cells(db.catalog, of).set(*of.find_column(column.column.text), *rule.default_value);
  } catch (const error& raised) {
    throw error(raised.kind(), raised.what(), column.default_value->at.begin);
  }
}

void add_rules(database_state& db, const syntax::create_table& of, const std::vector<key_definition>& keys) {
  const table& made = *db.catalog.find_table(of.table.text);
  for (const syntax::column_definition& each : of.columns) {
    column_rule rule{each.not_null};
    if (each.default_value != nullptr) {
      naming names;
      const syntax::place at = each.default_value->at;
      const bound given = binder(db.catalog, {}, false, 0, names).bind_constant(*each.default_value, "DEFAULT");
      const auto* const literal = std::get_if<physical_queryplan::literal>(&given.value);
      if (literal == nullptr || !names.parameters().empty()) {
        throw error(error_kind::unsupported, "a default value is written out", at.begin);
      }
      std::visit(
          [&]<class T>(const T& held) {
            if constexpr (std::is_constructible_v<ov::sql_executor::value, T>) rule.default_value = held;
          },
          *literal);
      check_default(db, made, each, rule);
    }
    const std::size_t column = *made.find_column(each.column.text);
    db.catalog.set_rule(made, column, std::move(rule));
  }
  for (const key_definition& key : keys) {
    if (!key.primary) continue;
    for (const std::string& column : key.columns) {
      const std::size_t at = *made.find_column(column);
      column_rule rule = db.catalog.rule(made, at);
      rule.not_null = true;
      db.catalog.set_rule(made, at, std::move(rule));
    }
  }
}

// Takes back what was defined, and reads the catalog again, unless it is told to keep it.
class change {
 public:
  explicit change(database_state& db) : db_(db), before_(std::in_place, *db.core) {}
  ~change() {
    if (is_kept_) return;
    before_.reset();
    try {
      db_.read_catalog();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the next statement reads it
      ++db_.version;
    }
  }
  change(const change&) = delete;
  change& operator=(const change&) = delete;

  void keep() {
    before_->keep();
    is_kept_ = true;
  }

 private:
  database_state& db_;
  std::optional<ovcoredb::savepoint> before_;
  bool is_kept_ = false;
};

}  // namespace

void define(database_state& db, const syntax::create_table& of) {
  if (!is_free(db, of.table, of.if_not_exists)) return;
  ovhost::table_definition made{std::string(of.table.text), {}};
  if (!of.inherits.text.empty()) made.base = find_table(db, of.inherits).name();
  std::set<std::string_view, name_order> taken;
  for (const syntax::column_definition& each : of.columns) {
    if (same_name(each.column.text, "object_number") || same_name(each.column.text, "object_type")) {
      refuse("every table has a column " + quoted(each.column.text) + " of its own", each.column.at);
    }
    if (!taken.insert(each.column.text).second) {
      refuse("two columns are called " + quoted(each.column.text), each.column.at);
    }
    made.members.push_back({std::string(each.column.text), type_of(db, of, each)});
  }
  const std::vector<key_definition> keys = keys_of(db, of);
  check_key_types(made, keys);
  change made_here(db);
  db.schema->define_table(made);
  define_keys(db, made.name, keys);
  db.read_catalog();
  add_rules(db, of, keys);
  made_here.keep();
}

std::uint64_t define_as(database_state& db, const syntax::create_table& of, const source_text& from) {
  if (!is_free(db, of.table, of.if_not_exists)) return 0;
  compiled rows;
  compile_query(db, *of.as, from, rows);
  if (!rows.names.parameters().empty()) {
    throw error(error_kind::unsupported, "CREATE TABLE AS takes no parameters", of.table.at.begin);
  }
  ovhost::table_definition made{std::string(of.table.text), {}};
  for (std::size_t at = 0; at < rows.columns.size(); ++at) {
    const result_column& column = rows.columns[at];
    const bool is_named = at < of.columns.size();
    ovhost::member_definition member{is_named ? std::string(of.columns[at].column.text) : column.name, {}};
    if (column.type == value_kind::reference) {
      member.type = ovhost::refers_to{column.table};
    } else {
      member.type = column.type == value_kind::null ? value_kind::text : column.type;
    }
    for (const ovhost::member_definition& other : made.members) {
      if (same_name(other.name, member.name)) refuse("two columns are called " + quoted(member.name), of.table.at);
    }
    made.members.push_back(std::move(member));
    rows.targets.push_back(at);
  }
  rows.table = made.name;
  change made_here(db);
  db.schema->define_table(made);
  define_keys(db, made.name, {});
  db.read_catalog();
  const std::uint64_t count = with_errors(rows.names.divisions, [&] { return insert(db, rows, {}); });
  made_here.keep();
  return count;
}

void define(database_state& db, const syntax::create_index& of) {
  const table& on = find_table(db, of.table);
  for (const auto& [name, each] : db.catalog.tables()) {
    const bool taken = std::any_of(each.indexes.begin(), each.indexes.end(),
                                   [&](const index& other) { return same_name(other.name, of.index.text); });
    if (!taken || same_name(of.index.text, whole_index)) continue;
    if (of.if_not_exists) return;
    refuse("there is an index " + quoted(of.index.text) + " already, on " + quoted(name), of.index.at);
  }
  ovhost::index_definition made{on.name(), std::string(of.index.text), {}, of.unique};
  for (const syntax::index_key& each : of.keys) {
    const auto column = on.find_column(each.column.text);
    if (!column) {
      refuse("table " + quoted(on.name()) + " has no column " + quoted(each.column.text) +
                 suggest(each.column.text, on.column_names()),
             each.column.at);
    }
    if (is_floating(on.columns[*column].property.kind)) {
      // The core has no keys of floating numbers. What stands before them serves as well.
      if (of.unique) {
        throw error(error_kind::unsupported, "a floating number cannot be a key: column " + quoted(each.column.text),
                    each.column.at.begin);
      }
      break;
    }
    const std::string& name = on.columns[*column].property.name;
    const auto is_it = [&](const ovhost::index_column& other) { return other.property == name; };
    if (std::any_of(made.columns.begin(), made.columns.end(), is_it)) {
      refuse("column " + quoted(name) + " is named twice", each.column.at);
    }
    made.columns.push_back({name, !each.descending});
  }
  if (made.columns.empty()) return;
  try {
    db.schema->define_index(made);
  } catch (const ovcoredb::unique_violation& raised) {
    throw error(error_kind::constraint,
                "two rows of table " + quoted(on.name()) + " have the same key (one is object number " +
                    std::to_string(raised.holder()) + "): the index cannot be unique",
                of.index.at.begin);
  }
  db.read_catalog();
}

// A view does not read itself, nor take parameters.
static void compile_view(database_state& db, const syntax::create_view& of, const source_text& from, compiled& into) {
  const auto replaced = db.catalog.views().find(of.view.text);
  const std::shared_ptr<const view> before = replaced != db.catalog.views().end() ? replaced->second : nullptr;
  const std::string name = before != nullptr ? replaced->first : std::string();
  if (before != nullptr) db.catalog.drop_view(name);
  try {
    compile_query(db, *of.of, from, into);
  } catch (...) {
    if (before != nullptr) db.catalog.add_view(name, before);
    throw;
  }
  if (before != nullptr) db.catalog.add_view(name, before);
  if (!into.names.parameters().empty()) {
    throw error(error_kind::unsupported, "a view takes no parameters", of.view.at.begin);
  }
}

void define(database_state& db, const syntax::create_view& of, const source_text& from) {
  if (db.catalog.find_table(of.view.text) != nullptr || !of.or_replace) {
    if (!is_free(db, of.view, of.if_not_exists)) return;
  }
  compiled checked;
  compile_view(db, of, from, checked);
  if (of.columns.size() > checked.columns.size()) {
    refuse("the view's columns are " + std::to_string(checked.columns.size()) + ", not " +
               std::to_string(of.columns.size()),
           of.columns.front().at);
  }
  auto kept = std::make_shared<view>();
  kept->text = from.text;
  std::size_t next = 0;
  kept->definition = &std::get<syntax::create_view>(syntax::parse(kept->text, next, kept->memory)->is);
  db.catalog.add_view(std::string(of.view.text), std::move(kept));
  ++db.version;
}

void drop(database_state& db, const syntax::drop& of) {
  for (const syntax::name& each : of.names) {
    const bool is_table = db.catalog.find_table(each.text) != nullptr;
    if (of.what == syntax::dropped::view) {
      if (of.if_exists || db.catalog.find_view(each.text) != nullptr) continue;
      refuse(is_table ? quoted(each.text) + " is a table, not a view" : "there is no view " + quoted(each.text),
             each.at);
    }
    bool exists = of.what == syntax::dropped::table && is_table;
    if (of.what == syntax::dropped::index) {
      for (const auto& [name, table] : db.catalog.tables()) {
        for (const index& index : table.indexes) exists = exists || same_name(index.name, each.text);
      }
    }
    const std::string what = of.what == syntax::dropped::table ? "table" : "index";
    if (exists) throw error(error_kind::unsupported, "the core drops no " + what, each.at.begin);
    if (!of.if_exists) refuse("there is no " + what + " " + quoted(each.text), each.at);
  }
  if (of.what != syntax::dropped::view) return;
  for (const syntax::name& each : of.names) {
    if (db.catalog.find_view(each.text) != nullptr) db.catalog.drop_view(each.text);
  }
  ++db.version;
}

}  // namespace ovsql
