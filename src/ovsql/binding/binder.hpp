// Gives the names and operators of a syntax tree their meaning: looks up tables and columns, checks types, and turns
// expressions into those of the physical plan and queries into logical ones. Every error has its place in the text.
#ifndef OVSQL_BINDING_BINDER_HPP_
#define OVSQL_BINDING_BINDER_HPP_

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ovsql/binding/bound.hpp"
#include "ovsql/binding/logical.hpp"
#include "ovsql/binding/naming.hpp"
#include "ovsql/binding/scope.hpp"
#include "ovsql/catalog/catalog.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql {

// Where an expression stands.
struct expression_site {
  select_scope* scope;
  item_list* list = nullptr;       // takes what the expression needs computed before it; null: it can need nothing
  grouping* aggregates = nullptr;  // takes aggregates; null: there can be none
  std::string_view clause{};       // "WHERE", for messages
  bool is_conditional = false;     // may not be evaluated for every row
};

// The groups of one SELECT.
struct group_key {
  const syntax::expression* written;
  expression before;  // the value in the rows that are grouped
  bound column;       // the value in the grouped row
};
struct grouping {
  select_body* body;
  std::vector<group_key> keys{};
  std::optional<bound> distinct{};  // what sum(DISTINCT ...) and avg(DISTINCT ...) are of: one for the whole SELECT
  struct distinct_aggregate {
    syntax::call written;
    syntax::place at;
    identifier column;
    std::uint32_t item;  // that makes the column, where it is computed apart
  };
  std::vector<distinct_aggregate> distinct_aggregates{};  // the calls of these
  bool mixes_distinct = false;                            // they are of different values
  const syntax::select* written = nullptr;
  select_scope* scope = nullptr;
};

class binder {
 public:
  // text: that of the statement, in which the places of its tree are.
  binder(const catalog& tables, std::string_view text, bool null_on_division_by_zero, std::uint32_t numbered_parameters,
         naming& names)
      : catalog_(tables),
        text_(text),
        null_on_division_by_zero_(null_on_division_by_zero),
        numbered_parameters_(numbered_parameters),
        names_(names) {}

  query bind_query(const syntax::query& written, select_scope* outer);

  // Binds an expression that reads no columns: a default value, LIMIT.
  bound bind_constant(const syntax::expression& written, std::string_view clause);

 private:
  // ---- Expressions: expressions.cpp, operators.cpp, functions.cpp
  bound bind(const syntax::expression& written, const expression_site& at);
  friend struct expression_visitor;
  bound bind_as(const syntax::parameter& written, syntax::place at);
  bound bind_arithmetic(const syntax::expression& written, const expression_site& at);
  bound calculate(syntax::binary_operator op, bound left, bound right, syntax::place sign, const expression_site& at);
  bound divide(bound left, bound right, bool remainder, syntax::place sign, const expression_site& at);
  bound bind_chain(const syntax::chain& written, syntax::place at, const expression_site& site);
  bound bind_part(const syntax::chain& of, std::size_t& next, syntax::place at, const expression_site& site);
  bound bind_case(const syntax::conditional& written, syntax::place at, const expression_site& site);
  bound bind_cast(const syntax::cast& written, syntax::place at, const expression_site& site);
  bound cast_text(std::string_view digits, value_kind kind, syntax::place at);
  bound bind_like(const syntax::like& written, syntax::place at, const expression_site& site);
  bound bind_in_list(const syntax::in_list& written, syntax::place at, const expression_site& site);
  bound bind_is_of(const syntax::is_of& written, syntax::place at, const expression_site& site);
  bound bind_call(const syntax::call& written, syntax::place at, const expression_site& site);
  bound bind_coalesce(const syntax::call& written, syntax::place at, const expression_site& site);
  bound bind_extreme(const syntax::call& written, syntax::place at, const expression_site& site, bool greatest);
  bound bind_nullif(const syntax::call& written, syntax::place at, const expression_site& site);
  bound bind_abs(const syntax::call& written, syntax::place at, const expression_site& site);

  // Makes an expression that is used several times cheap to repeat: computes it once where it stands, if that is safe.
  bound share(bound of, const expression_site& at);
  bound share_always(bound of, const expression_site& at);
  bound hoist(bound of, const expression_site& at);
  bool can_raise(const expression& of) const;

  // ---- Columns: columns.cpp
  bound bind_column(const syntax::column& written, syntax::place at, const expression_site& site);
  std::optional<bound> find_in(select_scope& where, const syntax::column& written, syntax::place at,
                               std::size_t& used) const;
  bound follow(bound from, const syntax::name& property, const expression_site& site);
  std::optional<bound> as_group_key(const syntax::expression& written, const expression_site& site);
  struct resolved_column {
    std::optional<expression> value;
    std::vector<std::string> path;
  };
  resolved_column resolve(const syntax::expression& written, select_scope& scope) const;
  physical_queryplan::variable variable_for(const bound& reference, const expression_site& site, syntax::place at);
  static std::vector<std::string_view> output_names(const relation& of);
  bool is_same_tree(const syntax::expression& left, const syntax::expression& right, const expression_site& site) const;
  bound group_key_of(const select_scope& where, const bound& column, syntax::place at) const;
  [[noreturn]] void refuse_column(const syntax::column& written, syntax::place at, const select_scope& scope) const;

  // ---- Aggregates: aggregates.cpp
  static void refuse_outer(const bound& argument, const select_scope& scope);
  bound bind_aggregate(const syntax::call& written, syntax::place at, const expression_site& site);
  bound add_count(grouping& into, std::vector<expression> of, syntax::place at);
  bound add_aggregate(grouping& into, aggregate of, value_kind kind, syntax::place at);
  bound count_distinct(grouping& into, const bound& of, syntax::place at);
  bound aggregate_distinct(grouping& into, const syntax::call& written, bound of, syntax::place at);
  bool mixes_distinct(const grouping& groups) const;
  void compute_apart(grouping& groups);
  void regroup(grouping& groups);
  void regroup_aggregate(const aggregate& of, const assignment& distinct, grouping& groups);
  static value_kind kind_of_column(const assignment& of);

  // ---- Subqueries: subqueries.cpp
  bound bind_scalar_query(const syntax::query& written, syntax::place at, const expression_site& site);
  bound bind_exists(const syntax::query& written, syntax::place at, const expression_site& site);
  bound bind_quantified(const syntax::expression& operand, syntax::binary_operator op, bool all,
                        const syntax::query& written, syntax::place at, const expression_site& site);
  bool bind_as_test(const syntax::expression& written, const expression_site& site);
  query bind_matching(const syntax::query& written, const bound& operand, syntax::binary_operator op, syntax::place at,
                      const expression_site& site);
  std::pair<expression, expression> count_rows(const syntax::query& written, syntax::place at,
                                               const expression_site& site);
  expression mark(query& of);
  std::uint32_t add_query(query of, item_kind kind, syntax::place at, const expression_site& site);
  void take_outputs(const query& from, column_owner owner);
  void take_reads(const query& from, item& into, const expression_site& site);
  const output& only_output(const query& of, syntax::place at) const;

  // ---- Queries: queries.cpp, select.cpp, sources.cpp
  query bind_body(const syntax::query& written, select_scope* outer);
  query bind_select(const syntax::select& written, const syntax::query& whole, select_scope* outer);
  query bind_values(const syntax::values& written, select_scope* outer);
  query bind_set_operation(const syntax::set_operation& written, select_scope* outer);
  void tag_sides(bool except, union_body& body, query& into);
  aggregate extreme_of(bool greatest, expression argument);
  static void rename(query& of, syntax::name_list names, syntax::place at);
  void settle_outputs(query& of, bool distinct, const select_scope& scope);
  void bind_limits(const syntax::query& written, query& into);
  static void add_conditions(expression of, std::vector<expression>& into);
  void bind_conditions(const syntax::expression& written, const expression_site& site);
  void bind_groups(const syntax::select& written, grouping& groups, const expression_site& site);
  std::vector<output> bind_items(const syntax::select& written, const expression_site& site,
                                 std::vector<const syntax::expression*>& trees);
  void bind_order(const syntax::query& written, const std::vector<const syntax::expression*>& trees, query& into,
                  const expression_site* site);
  void add_order_key(const syntax::order_item& written, expression key, query& into);
  void expand_all(const syntax::all_columns& written, syntax::place at, const select_scope& scope,
                  std::vector<output>& outputs) const;

  void bind_source(const syntax::source& written, select_scope& scope, item_list& into);
  void bind_join(const syntax::joined_source& written, select_scope& scope, item_list& into);
  void bind_outer_join(const syntax::joined_source& written, select_scope& scope, item_list& into);
  void bind_on(const syntax::joined_source& written, std::size_t first, std::size_t middle, select_scope& scope,
               item_list& into);
  void bind_using(const std::vector<syntax::name>& names, syntax::join_kind kind, std::size_t first, std::size_t middle,
                  select_scope& scope, item_list& into);
  static std::vector<syntax::name> common_columns(std::size_t first, std::size_t middle, const select_scope& scope);
  item_set needs_of(const item_list& list, std::uint32_t block) const;
  void add_relation(relation added, const syntax::source& written, select_scope& scope) const;
  void add_table(const table& of, const syntax::source& written, std::string_view alias, select_scope& scope,
                 item_list& into);
  void add_subquery(query of, const syntax::source& written, std::string_view alias, select_scope& scope,
                    item_list& into);
  std::optional<query> bind_common_table(std::string_view name, syntax::place at);
  query bind_common_table(const common_tables& among, std::size_t number, syntax::place at);
  query bind_view(const view& of, syntax::place at);

  std::uint32_t new_item(select_scope& scope, syntax::place at) const;
  assignment define(std::string_view name, expression value, value_kind kind, column_owner owner);
  bool is_own_column(const expression& of, const select_scope& scope) const;

  const catalog& catalog_;
  std::string_view text_;
  bool null_on_division_by_zero_;
  std::uint32_t numbered_parameters_;
  naming& names_;
  const common_tables* common_ = nullptr;
  std::size_t views_ = 0;    // how deep views are nested
  syntax::place view_at_{};  // where the statement names the outermost one
  std::size_t queries_ = 0;  // how many were bound
};

// The value that a column computed by an assignment has above it.
expression read_of(const assignment& of);
expression read_of_aggregate(const aggregate& of);

}  // namespace ovsql

#endif  // OVSQL_BINDING_BINDER_HPP_
