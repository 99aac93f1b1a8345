#ifndef OVSQL_SESSION_STATEMENT_STATE_HPP_
#define OVSQL_SESSION_STATEMENT_STATE_HPP_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ov_sql_executor/execution/cursor.hpp"
#include "ov_sql_executor/execution/runnable.hpp"
#include "ovsql/binding/logical.hpp"
#include "ovsql/binding/naming.hpp"
#include "ovsql/session/state.hpp"
#include "ovsql/session/statement.hpp"
#include "ovsql/syntax/memory.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql {

// One run of a plan, whose rows lie where they are looked at.
struct run {
  run(const ov::sql_executor::runnable& of, std::vector<value> parameters, std::uint64_t context)
      : state{of.constants, std::move(parameters), {}, context}, rows(of, state) {}

  ov::sql_executor::execution_context state;
  ov::sql_executor::cursor rows;
};

// What a statement becomes before it is run. Holds nothing of its text.
struct compiled {
  naming names{};
  std::vector<result_column> columns{};
  std::optional<ov::sql_executor::runnable> plan{};  // a query, and the rows of an INSERT
  std::vector<std::string> words{};                  // EXPLAIN: the lines
  bool is_explanation = false;
  // INSERT
  std::string table{};
  std::vector<std::size_t> targets{};              // the table's columns that the rows fill
  std::vector<std::vector<value>> literal_rows{};  // where all values are written out
  std::vector<syntax::place> places{};             // of the first row's values
};

// The text that a tree's places are in, and how many of the statement's parameters are numbered.
struct source_text {
  std::string_view text;
  std::uint32_t numbered = 0;
};

struct statement_state {
  database_state* db = nullptr;
  std::string sql{};
  std::size_t offset = 0;     // of sql in the script that it was taken from
  std::uint64_t version = 0;  // of the catalog that it was compiled with
  std::unique_ptr<compiled> code{};
  std::vector<std::optional<value>> parameters{};
  std::vector<value_kind> kinds{};  // of the parameters, that it was compiled with

  std::unique_ptr<run> running{};
  std::size_t explained = 0;  // how many lines were given
  bool is_open = false;
  bool has_row = false;
  std::uint64_t changes = 0;
  std::vector<value> line{};  // the row of EXPLAIN
};

// ---- compile.cpp

// Binds and plans a query, an INSERT or an EXPLAIN; of other statements only the kind is looked at.
// kinds: the types of the parameters' values, as far as they are known.
std::unique_ptr<compiled> compile(database_state& db, const syntax::statement& tree, std::string_view text,
                                  std::vector<value_kind> kinds);

// Plans a query and fills in plan and columns.
void compile_query(database_state& db, const syntax::query& of, const source_text& from, compiled& into);

// ---- definitions.cpp, insertion.cpp, copying.cpp: statements that change the database. Return how many rows were
// added.

void define(database_state& db, const syntax::create_table& of);
std::uint64_t define_as(database_state& db, const syntax::create_table& of, const source_text& from);
void define(database_state& db, const syntax::create_index& of);
void define(database_state& db, const syntax::create_view& of, const source_text& from);
void drop(database_state& db, const syntax::drop& of);
void compile_insert(database_state& db, const syntax::insert& of, const source_text& from, compiled& into);
std::uint64_t insert(database_state& db, const compiled& of, std::vector<value> parameters);
std::uint64_t copy(database_state& db, const syntax::copy_from& of);

// ---- explanation.cpp

std::vector<std::string> explain(database_state& db, const physical_queryplan::QueryPlan::PredicateVariant& of,
                                 const naming& names, syntax::explain_format format);

}  // namespace ovsql

#endif  // OVSQL_SESSION_STATEMENT_STATE_HPP_
