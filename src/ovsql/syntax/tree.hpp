// The syntax trees of statements. They say what is written and where, not what it means. A tree lives in a
// syntax::memory; its texts point there or into the statement's text, which has to live as long.
#ifndef OVSQL_SYNTAX_TREE_HPP_
#define OVSQL_SYNTAX_TREE_HPP_

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

namespace ovsql::syntax {

// A part of the text, in bytes from its beginning.
struct place {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

// A name as written, without its quotes. Names are compared without regard to the case of ASCII letters.
struct name {
  std::string_view text{};
  place at{};
};

struct expression;
struct query;
struct statement;
using expression_list = std::span<const expression* const>;
using name_list = std::span<const name>;

// ---- Expressions

struct null_literal {};
struct truth_literal {
  bool value;
};
struct number_literal {
  std::string_view digits;  // 12, 1.5, .5, 2e-3: without a sign
};
struct text_literal {
  std::string_view utf8;  // without quotes
};
struct binary_literal {
  std::string_view bytes;  // X'0a1b', decoded
};

// ?, ?2, $2 or :name. Numbers begin with 1; each ? has the next one.
struct parameter {
  std::uint32_t number = 0;    // 0: it has a name
  std::string_view name = {};  // without its colon
};

// city, f.city, f.origin.city
struct column {
  name_list parts;
};

// *, f.*
struct all_columns {
  name_list of;
};

enum class unary_operator : std::uint8_t { plus, minus, negation };
struct unary {
  unary_operator op;
  const expression* operand;
};

enum class binary_operator : std::uint8_t {
  add,
  subtract,
  multiply,
  divide,
  modulo,
  equal,
  not_equal,
  less,
  at_most,
  greater,
  at_least,
  starts_with  // ^@
};
struct binary {
  binary_operator op;
  const expression* left;
  const expression* right;
  place sign;
};

enum class chain_operator : std::uint8_t { conjunction, disjunction, concatenation };

// Two or more operands of one operator, AND, OR or ||. An operand that is such a chain itself, in brackets too, is
// dissolved into this one.
struct chain {
  chain_operator op;
  expression_list operands;
};

enum class truth_test : std::uint8_t { null, truth, falsehood, unknown };
struct is_test {  // IS [NOT] NULL, TRUE, FALSE, UNKNOWN
  const expression* operand;
  truth_test test;
  bool negated;
};
struct is_distinct {  // IS [NOT] DISTINCT FROM
  const expression* left;
  const expression* right;
  bool negated;  // IS NOT DISTINCT FROM
};
struct is_of {  // IS [NOT] OF (city, airport)
  const expression* operand;
  name_list types;
  bool negated;
};
struct between {
  const expression* operand;
  const expression* low;
  const expression* high;
  bool negated;
};
struct like {
  const expression* operand;
  const expression* pattern;
  const expression* escape;  // null: none is given
  bool negated;
};
struct in_list {
  const expression* operand;
  expression_list members;
  bool negated;
};
struct in_query {
  const expression* operand;
  const query* of;
  bool negated;
};
struct exists {
  const query* of;
};
struct quantified {    // a < ANY (SELECT ...); SOME is ANY
  binary_operator op;  // a comparison
  const expression* left;
  bool all;
  const query* of;
};
struct scalar_query {
  const query* of;
};

struct case_branch {
  const expression* condition;
  const expression* result;
};
struct conditional {
  const expression* operand;  // null for CASE WHEN
  std::span<const case_branch> branches;
  const expression* otherwise;  // null for none
};

// A type's words in lower case with single spaces, without what follows in brackets: "double precision", "varchar".
struct type_name {
  std::string_view words{};
  place at{};
};
struct cast {
  const expression* operand;
  type_name to;
};

// A function or an aggregate, named in lower case. COALESCE, NULLIF, GREATEST and LEAST are calls.
struct call {
  name function;
  expression_list arguments;
  bool star;                 // count(*)
  bool distinct;             // count(DISTINCT x)
  const expression* filter;  // FILTER (WHERE ...), or null
};

using expression_variant =
    std::variant<null_literal, truth_literal, number_literal, text_literal, binary_literal, parameter, column,
                 all_columns, unary, binary, chain, is_test, is_distinct, is_of, between, like, in_list, in_query,
                 exists, quantified, scalar_query, conditional, cast, call>;

struct expression {
  expression_variant is;
  place at;
};

// ---- Queries

struct select_item {
  const expression* value;
  name alias;  // an empty text for none
};

struct order_item {
  const expression* key;
  bool descending;
  std::optional<bool> nulls_first;
};

struct source;

// A table, view or common table.
struct named_source {
  name table;
};
struct query_source {
  const query* of;
  bool lateral;
};
enum class join_kind : std::uint8_t { cross, inner, left, right, full };
struct joined_source {
  join_kind kind;
  const source* left;
  const source* right;
  const expression* on;   // null for none
  name_list using_names;  // USING (a, b)
  bool natural;
};

struct source {
  std::variant<named_source, query_source, joined_source> is;
  name alias;         // an empty text for none, and for a join
  name_list columns;  // of the alias: AS t (a, b)
  place at;
};

struct select {
  bool distinct;
  std::span<const select_item> items;
  std::span<const source* const> from;
  const expression* where;   // null for none
  expression_list group_by;  // GROUP BY
  const expression* having;  // null for none
};

struct values {
  std::span<const expression_list> rows;
};

enum class set_operator : std::uint8_t { union_of, except, intersect };
struct set_operation {
  set_operator op;
  bool all;
  const query* left;
  const query* right;
  place sign;
};

struct common_table {
  name table;
  name_list columns;
  const query* of;
};

struct query {
  std::span<const common_table> with;
  std::variant<select, values, set_operation> body;
  std::span<const order_item> order_by;
  const expression* limit;   // null for none, and for LIMIT ALL
  const expression* offset;  // null for none
  place at;
};

// ---- Statements

struct column_definition {
  name column;
  type_name type;  // no words where only REFERENCES says it
  bool not_null;
  bool primary_key;
  bool unique;
  name references;                  // an empty text for none
  const expression* default_value;  // null for none
};

struct key_constraint {  // PRIMARY KEY (a, b), UNIQUE (a, b)
  bool primary;
  name_list columns;
};

struct create_table {
  name table;
  std::span<const column_definition> columns;
  std::span<const key_constraint> keys;
  name inherits;    // an empty text for none
  const query* as;  // CREATE TABLE ... AS, or null
  bool if_not_exists;
};

struct index_key {
  name column;
  bool descending;
};
struct create_index {
  name index;
  name table;
  std::span<const index_key> keys;
  bool unique;
  bool if_not_exists;
};

struct create_view {
  name view;
  name_list columns;
  const query* of;
  bool or_replace;
  bool if_not_exists;
};

enum class dropped : std::uint8_t { table, index, view };
struct drop {
  dropped what;
  name_list names;
  bool if_exists;
};

struct insert {
  name table;
  name_list columns;  // none: all of them
  const query* rows;  // null for DEFAULT VALUES
};

struct copy_from {
  name table;
  name_list columns;  // none: all of them
  std::string_view path;
  bool header;
  char delimiter;
  std::optional<std::string_view> null_text;
};

enum class explain_format : std::uint8_t { text, dot, json };
struct explain {
  const query* of;
  explain_format format;
};

// A statement that is SQL and not done here: "UPDATE", "DELETE", "BEGIN", ... Its text is skipped, not looked at.
struct unsupported {
  std::string_view word;
};

struct statement {
  std::variant<const query*, create_table, create_index, create_view, drop, insert, copy_from, explain, unsupported> is;
  place at;                          // without the semicolon
  std::uint32_t question_marks = 0;  // how many parameters are numbered: the highest number
};

}  // namespace ovsql::syntax

#endif  // OVSQL_SYNTAX_TREE_HPP_
