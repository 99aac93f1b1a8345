#include "engines.hpp"

#include <memory>
#include <optional>
#include <stdexcept>

#include "ov_sql_executor/execution/cursor.hpp"
#include "ov_sql_executor/planning/plan.hpp"

namespace bench {

namespace {

using ov::sql_executor::runnable;
using ov::sql_executor::value;

struct integer_sum {
  std::uint64_t sum = 0;

  void operator()(std::int64_t number) { sum += static_cast<std::uint64_t>(number); }
  void operator()(std::uint64_t number) { sum += number; }
  template <class Other>
  void operator()(const Other& /*other*/) {}
};

void look_at_rows(const runnable& statement, std::uint64_t on, std::vector<value> parameters, outcome& so_far) {
  ov::sql_executor::execution_context context{statement.constants, std::move(parameters), {}, on};
  ov::sql_executor::cursor rows(statement, context);
  integer_sum integers;
  while (rows.next()) {
    ++so_far.rows;
    for (const value& each : rows.row()) std::visit(integers, each);
  }
  so_far.sum += integers.sum;
}

void read_rows(const runnable& statement, std::uint64_t on, std::vector<value> parameters, outcome& so_far) {
  ov::sql_executor::execution_context context{statement.constants, std::move(parameters), {}, on};
  const std::unique_ptr<ov::sql_executor::enumerator> rows(statement.root->create_enumerator(context));
  integer_sum integers;
  while (std::optional<ov::sql_executor::row> row = rows->next(context)) {
    ++so_far.rows;
    for (const value& each : *row) std::visit(integers, each);
  }
  so_far.sum += integers.sum;
}

runnable planned(ovhost::plan made) { return std::get<0>(physical_to_exec::Plan(std::move(made))); }

void read_rows(sqlite3_stmt* statement, outcome& so_far) {
  while (sqlite3_step(statement) == SQLITE_ROW) {
    ++so_far.rows;
    for (int i = 0; i < sqlite3_column_count(statement); ++i) {
      switch (sqlite3_column_type(statement, i)) {
        case SQLITE_INTEGER:
          so_far.sum += static_cast<std::uint64_t>(sqlite3_column_int64(statement, i));
          break;
        case SQLITE_FLOAT:
          sqlite3_column_double(statement, i);
          break;
        default:
          sqlite3_column_text(statement, i);
          sqlite3_column_bytes(statement, i);
      }
    }
  }
  if (sqlite3_reset(statement) != SQLITE_OK) throw std::runtime_error("SQLite: a query failed");
}

}  // namespace

std::string sql_of(const shape& of, const sample& data) {
  const std::string name = "$rows";
  std::string sql = of.sql;
  for (std::size_t at = 0; (at = sql.find(name)) != std::string::npos;) {
    sql.replace(at, name.size(), std::to_string(data.rows()));
  }
  return sql;
}

std::vector<std::int64_t> parameters_of(const shape& of, const sample& data) {
  return of.parameters ? of.parameters(data.rows()) : std::vector<std::int64_t>{0};
}

prepared prepare_ov(const shape& of, const sample& data) {
  const auto names = std::make_shared<ovhost::query>();
  const auto statement = std::make_shared<runnable>(planned(of.make(*names, data.rows())));
  const auto make_again = of.make_again ? of.make_again(*names) : std::function<ovhost::plan()>();
  const auto read = of.with_cursor ? look_at_rows : static_cast<decltype(&look_at_rows)>(read_rows);
  return [&data, names, statement, make_again, read, parameters = parameters_of(of, data)] {
    outcome result;
    for (const std::int64_t parameter : parameters) {
      if (make_again) *statement = planned(make_again());
      read(*statement, data.context(), {parameter}, result);
    }
    return result;
  };
}

on_any_context prepare_ov_for_contexts(const shape& of, const sample& data) {
  ovhost::query names;
  const auto statement = std::make_shared<runnable>(planned(of.make(names, data.rows())));
  const auto read = of.with_cursor ? look_at_rows : static_cast<decltype(&look_at_rows)>(read_rows);
  return [statement, read, parameters = parameters_of(of, data)](std::uint64_t context) -> prepared {
    return [statement, read, parameters, context] {
      outcome result;
      for (const std::int64_t parameter : parameters) read(*statement, context, {parameter}, result);
      return result;
    };
  };
}

prepared prepare_sqlite(const shape& of, const sample& data) {
  const std::string sql = sql_of(of, data);
  const auto statement = std::make_shared<sqlite_statement>(data.sqlite(), sql);
  return [of, &data, sql, statement, parameters = parameters_of(of, data)] {
    outcome result;
    for (const std::int64_t parameter : parameters) {
      if (of.make_again) *statement = sqlite_statement(data.sqlite(), sql);
      if (of.parameters) sqlite3_bind_int64(statement->get(), 1, parameter);
      read_rows(statement->get(), result);
    }
    return result;
  };
}

prepared prepare_floor(const shape& of, const sample& data) {
  const auto core = std::make_shared<core_loop>(data);
  return [of, core, parameters = parameters_of(of, data)] {
    outcome result;
    for (const std::int64_t parameter : parameters) result.sum += of.floor(*core, parameter);
    return result;
  };
}

}  // namespace bench
