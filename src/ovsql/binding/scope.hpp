#ifndef OVSQL_BINDING_SCOPE_HPP_
#define OVSQL_BINDING_SCOPE_HPP_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ovsql/binding/bound.hpp"
#include "ovsql/binding/logical.hpp"
#include "ovsql/binding/naming.hpp"

namespace ovsql {

// One table, view or subquery in FROM, under the name that the query gives it.
struct relation {
  std::string_view alias;
  syntax::name_list renamed{};  // the columns' names, the first ones, as the alias gives them
  const ovsql::table* table = nullptr;
  physical_queryplan::variable variable{};  // of a table
  std::vector<output> outputs{};            // of anything else

  std::size_t width() const { return table != nullptr ? table->columns.size() : outputs.size(); }
  std::string_view column_name(std::size_t at) const;
  std::optional<std::size_t> find(std::string_view name) const;  // the first of that name
  bool has_two(std::string_view name) const;
  bound read(std::size_t at, syntax::place where) const;
};

// A column that USING or NATURAL makes of two.
struct merged_column {
  std::string_view name;
  bound value;
  std::vector<std::pair<std::size_t, std::size_t>> hides;  // relation and column: not listed by * again
};

struct grouping;

// Common tables that a query sees, the nearest first.
struct common_tables {
  const syntax::common_table* first = nullptr;
  std::size_t count = 0;
  const common_tables* outer = nullptr;
  struct select_scope* scope = nullptr;  // the enclosing SELECT of the WITH
  std::vector<bool>* is_used = nullptr;  // for each of them, whether something reads it
};

// The names that are visible in one SELECT.
struct select_scope {
  select_scope* outer = nullptr;
  std::uint32_t block = 0;
  std::vector<relation> relations{};
  std::vector<merged_column> merged{};
  std::uint32_t items = 0;             // how many items the SELECT has so far
  std::vector<std::uint32_t> reads{};  // the columns of enclosing SELECTs that are read in it and below
  const grouping* groups = nullptr;    // while what follows GROUP BY is bound
  item_list* from = nullptr;           // where its tables are
  std::vector<std::pair<expression, physical_queryplan::variable>> followed{};  // references with objects of their own
};

}  // namespace ovsql

#endif  // OVSQL_BINDING_SCOPE_HPP_
