// What a query asks for, with names and types resolved, before it is decided how to get it. Expressions are those of
// the physical plan.
#ifndef OVSQL_BINDING_LOGICAL_HPP_
#define OVSQL_BINDING_LOGICAL_HPP_

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "ov_sql_executor/planning/query_plan.hpp"
#include "ovhost/values/value_kind.hpp"
#include "ovsql/binding/item_set.hpp"
#include "ovsql/catalog/catalog.hpp"

namespace ovsql {

using ovhost::value_kind;
using physical_queryplan::expression;
using physical_queryplan::QueryPlan::aggregate;
using physical_queryplan::QueryPlan::assignment;
using physical_queryplan::QueryPlan::order_key;

struct item_list;
struct query;

enum class item_kind : std::uint8_t {
  table,     // the rows of a table
  subquery,  // the rows of a query; those of a query that always has exactly one included
  optional,  // the rows of a query, or a row of NULLs where it has none
  test,      // keeps a row once if the query has a row for it
  computed,  // a value computed from other items
  left_join,
  full_join
};

// What rows are made from.
struct item {
  item_kind kind = item_kind::table;
  item_set covers;  // the items that it makes, itself and those inside
  item_set needs;   // the items that it reads, besides those that it makes

  // table
  const ovsql::table* table = nullptr;
  physical_queryplan::variable variable{};

  std::unique_ptr<ovsql::query> query;  // subquery, optional, test
  std::optional<assignment> computed;   // computed

  // left_join, full_join
  std::unique_ptr<item_list> left;
  std::unique_ptr<item_list> right;
  std::optional<expression> condition;  // full_join; a left join's are those of its right side
};

// Items that are joined with each other, and what must hold of them.
struct item_list {
  std::vector<item> items;
  std::vector<expression> conditions;
};

// A column of a query's rows.
struct output {
  std::string_view name;  // lives until the statement is planned
  expression column;
  value_kind kind = value_kind::null;  // null: the query does not say it
  const table* target = nullptr;       // of a reference
};

struct select_body {
  std::uint32_t block = 0;
  item_list from;
  bool grouped = false;
  std::vector<aggregate> aggregates;
  std::vector<assignment> group_by;
  // A second grouping of the first one's rows, for aggregates of distinct values.
  bool regrouped = false;
  std::vector<aggregate> outer_aggregates;
  std::vector<assignment> outer_group_by;
  std::vector<assignment> outer_extend;
  item_list after;                 // is joined to the rows of the above, and filters them
  std::vector<assignment> extend;  // is computed last
};

struct values_row {
  std::vector<assignment> columns;
  item_list needs;  // what the values are computed from: subqueries
};
struct values_body {
  std::uint32_t block = 0;
  std::vector<values_row> rows;
};

struct union_body {
  std::unique_ptr<query> left;
  std::unique_ptr<query> right;
  std::vector<assignment> left_columns;  // the same columns on both sides
  std::vector<assignment> right_columns;
};

struct query {
  std::variant<select_body, values_body, union_body> body;
  std::optional<std::vector<assignment>> distinct;  // groups the rows by these columns
  std::vector<aggregate> distinct_aggregates;       // and computes these
  std::vector<expression> conditions;               // hold of the rows after that
  std::vector<order_key> order;
  std::optional<expression> limit;
  std::optional<expression> offset;
  std::optional<assignment> mark;  // is added to each row at the end
  std::vector<output> outputs;
  bool is_one_row = false;           // always gives exactly one row
  bool is_limited_to_one = false;    // its limit is 1
  std::vector<std::uint32_t> reads;  // the columns of enclosing queries that it reads
};

}  // namespace ovsql

#endif  // OVSQL_BINDING_LOGICAL_HPP_
