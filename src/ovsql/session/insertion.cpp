#include <algorithm>

#include "ovsql/binding/binder.hpp"
#include "ovsql/session/cells.hpp"
#include "ovsql/session/run_errors.hpp"
#include "ovsql/session/statement_state.hpp"

namespace ovsql {
namespace {

// The value of a literal that is written out; nothing for a parameter and for what has to be computed.
std::optional<value> literal_value(const expression& of) {
  const auto* const literal = std::get_if<physical_queryplan::literal>(&of);
  if (literal == nullptr) return std::nullopt;
  return std::visit(
      []<class T>(const T& held) -> std::optional<value> {
        if constexpr (std::is_constructible_v<value, T>) return value(held);
        return std::nullopt;
      },
      *literal);
}

// Reads rows of literals without planning anything: there may be very many. Gives up at the first value that is none.
bool read_literals(const database_state& db, const syntax::values& of, std::size_t width, compiled& into) {
  binder binding(db.catalog, {}, db.how.null_on_division_by_zero, 0, into.names);
  into.literal_rows.reserve(of.rows.size());
  for (const syntax::expression_list& row : of.rows) {
    if (row.size() != width) return false;
    std::vector<value>& made = into.literal_rows.emplace_back();
    made.reserve(width);
    for (const syntax::expression* each : row) {
      const bool is_simple = each->is.index() <= 4 || std::holds_alternative<syntax::unary>(each->is);
      std::optional<value> read =
          is_simple ? literal_value(binding.bind_constant(*each, "VALUES").value) : std::nullopt;
      if (!read) {
        into.literal_rows.clear();
        return false;
      }
      made.push_back(*std::move(read));
    }
  }
  return true;
}

// Says what is wrong with a row in terms of the index and the object that holds the key.
[[noreturn]] void raise_violation(const database_state& db, const table& of, const ovcoredb::unique_violation& raised) {
  const ovhost::catalog metadata(db.context->handle());
  for (const table* owner = &of; owner != nullptr; owner = db.catalog.table_of(owner->info.base)) {
    for (const ovhost::index_info& each : metadata.indexes(owner->info)) {
      if (each.handle != raised.index()) continue;
      std::string columns;
      for (const auto& column : each.columns) columns += (columns.empty() ? "" : ", ") + column.property.name;
      throw error(error_kind::constraint, "table " + quoted(owner->name()) + " has a row with the same " + columns +
                                              " already (object number " + std::to_string(raised.holder()) + ")");
    }
  }
  throw error(error_kind::constraint, raised.what());
}

}  // namespace

void compile_insert(database_state& db, const syntax::insert& of, const source_text& from, compiled& into) {
  const table* const found = db.catalog.find_table(of.table.text);
  if (found == nullptr) {
    const bool is_view = db.catalog.find_view(of.table.text) != nullptr;
    std::vector<std::string_view> known;
    for (const auto& [each, table] : db.catalog.tables()) known.push_back(each);
    throw error(is_view ? error_kind::unsupported : error_kind::name,
                is_view ? quoted(of.table.text) + " is a view: nothing can be inserted"
                        : "there is no table " + quoted(of.table.text) + suggest(of.table.text, known),
                of.table.at.begin);
  }
  into.table = found->name();
  for (const syntax::name& each : of.columns) {
    const auto column = found->find_column(each.text);
    if (!column) {
      throw error(error_kind::name,
                  "table " + quoted(found->name()) + " has no column " + quoted(each.text) +
                      suggest(each.text, found->column_names()),
                  each.at.begin);
    }
    if (std::count(into.targets.begin(), into.targets.end(), *column) != 0) {
      throw error(error_kind::name, "column " + quoted(each.text) + " is named twice", each.at.begin);
    }
    into.targets.push_back(*column);
  }
  if (of.rows == nullptr) {
    into.literal_rows.emplace_back();
    return;
  }
  if (of.columns.empty()) {
    for (std::size_t at = 0; at < found->columns.size(); ++at) into.targets.push_back(at);
  }
  const auto* const values = std::get_if<syntax::values>(&of.rows->body);
  const bool is_bare = values != nullptr && !of.rows->limit && !of.rows->offset && of.rows->order_by.empty();
  const bool is_literal =
      is_bare && with_errors({}, [&] { return read_literals(db, *values, into.targets.size(), into); });
  if (is_literal) return;
  compile_query(db, *of.rows, from, into);
  if (into.columns.size() != into.targets.size()) {
    throw error(error_kind::type,
                "a row has " + std::to_string(into.columns.size()) + " of the " + std::to_string(into.targets.size()) +
                    " values that it needs",
                of.rows->at.begin);
  }
  into.columns.clear();
}

std::uint64_t insert(database_state& db, const compiled& of, std::vector<value> parameters) {
  const table& into = *db.catalog.find_table(of.table);
  // A query may read the table that it fills: its rows are made first.
  std::vector<std::vector<value>> made;
  if (of.plan) {
    run reading(*of.plan, std::move(parameters), db.context->handle());
    while (reading.rows.next()) made.emplace_back(reading.rows.row().begin(), reading.rows.row().end());
  }
  const std::vector<std::vector<value>>& rows = of.plan ? made : of.literal_rows;
  row_of_cells cells(db.catalog, into);
  ovcoredb::savepoint before(*db.core);
  for (const std::vector<value>& row : rows) {
    cells.clear();
    for (std::size_t at = 0; at < row.size(); ++at) cells.set(of.targets[at], row[at]);
    try {
      db.core->insert(into.info.tag, cells.finish());
    } catch (const ovcoredb::unique_violation& raised) {
      raise_violation(db, into, raised);
    }
  }
  before.keep();
  if (db.catalog.knows_row_count(into)) {
    db.catalog.set_row_count(into, db.catalog.row_count(into) + static_cast<double>(rows.size()));
  }
  return rows.size();
}

}  // namespace ovsql
