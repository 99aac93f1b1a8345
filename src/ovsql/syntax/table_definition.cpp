#include <vector>

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/definitions.hpp"
#include "ovsql/syntax/expressions.hpp"
#include "ovsql/syntax/queries.hpp"
#include "ovsql/syntax/types.hpp"

namespace ovsql::syntax {
namespace {

void refuse_constraint(const reader& in) {
  in.refuse_at("check"_k, "CHECK is not supported");
  in.refuse_at("foreign"_k, "FOREIGN KEY is not supported: write REFERENCES behind a column");
  in.refuse_at("collate"_k, "there are no collations here");
  in.refuse_at("generated"_k, "generated columns are not supported");
}

// REFERENCES airport [(code)]
void parse_references(reader& in, column_definition& of) {
  of.references = in.take_dotted_name("a table");
  if (in.at(token_kind::open)) in.take_names_in_brackets("a column");
  in.refuse_at("on"_k, "actions ON DELETE and ON UPDATE are not supported");
}

// NOT NULL, DEFAULT 5, ...; false where none follows.
bool parse_column_constraint(reader& in, column_definition& of) {
  refuse_constraint(in);
  if (in.accept("not"_k)) {
    in.expect("null"_k, "NULL");
    of.not_null = true;
  } else if (in.accept("primary"_k)) {
    in.expect("key"_k, "KEY");
    of.primary_key = true;
  } else if (in.accept("unique"_k)) {
    of.unique = true;
  } else if (in.accept("default"_k)) {
    of.default_value = parse_expression(in, level::other);
  } else if (in.accept("references"_k)) {
    parse_references(in, of);
  } else {
    return in.accept("null"_k);
  }
  return true;
}

// CONSTRAINT name
bool accept_constraint_name(reader& in) {
  if (!in.accept("constraint"_k)) return false;
  in.take_name("a name for the constraint");
  refuse_constraint(in);
  return true;
}

void parse_column_constraints(reader& in, column_definition& of) {
  while (true) {
    const bool named = accept_constraint_name(in);
    if (parse_column_constraint(in, of)) continue;
    if (named) in.fail_expected("NOT NULL, PRIMARY KEY, UNIQUE, DEFAULT or REFERENCES");
    return;
  }
}

column_definition parse_column(reader& in) {
  column_definition made{};
  made.column = in.take_name("a column or a constraint");
  if (in.at(token_kind::comma) || in.at(token_kind::close)) in.fail_expected("a type");
  if (in.at_name() && !in.at("generated"_k)) made.type = parse_type(in);
  const token first = in.now();
  parse_column_constraints(in, made);
  if (made.type.words.empty() && made.references.text.empty()) {
    throw error(error_kind::syntax, "the column has no type before its constraints", first.at.begin);
  }
  return made;
}

bool at_table_constraint(const reader& in) {
  return in.at("constraint"_k) || in.at("primary"_k) || in.at("unique"_k) || in.at("check"_k) || in.at("foreign"_k);
}

key_constraint parse_table_constraint(reader& in) {
  accept_constraint_name(in);
  refuse_constraint(in);
  key_constraint made{in.accept("primary"_k), {}};
  if (made.primary) {
    in.expect("key"_k, "KEY");
  } else {
    in.expect("unique"_k, "PRIMARY KEY or UNIQUE");
  }
  made.columns = in.take_names_in_brackets("a column");
  return made;
}

// Columns and constraints, in brackets and in any order.
void parse_elements(reader& in, create_table& of) {
  std::vector<column_definition> columns;
  std::vector<key_constraint> keys;
  in.expect(token_kind::open, "\"(\" or AS");
  while (!in.at(token_kind::close)) {
    if (at_table_constraint(in)) {
      keys.push_back(parse_table_constraint(in));
    } else {
      columns.push_back(parse_column(in));
    }
    if (in.at(token_kind::close)) break;
    in.expect(token_kind::comma, "a comma, a constraint or \")\"");
    if (in.at(token_kind::close)) in.fail_expected("a column or a constraint");
  }
  in.take();
  of.columns = in.trees.keep(columns);
  of.keys = in.trees.keep(keys);
}

void parse_inherits(reader& in, create_table& of) {
  if (!in.accept("inherits"_k)) return;
  in.expect(token_kind::open, "\"(\"");
  of.inherits = in.take_dotted_name("a table");
  if (in.at(token_kind::comma)) in.refuse("a table inherits from one other table at most", in.now().at);
  in.expect_close();
}

}  // namespace

create_table parse_create_table(reader& in) {
  create_table made{};
  made.if_not_exists = accept_if_not_exists(in);
  made.table = in.take_dotted_name("a name for the table");
  if (in.accept("as"_k)) {
    made.as = parse_query(in);
    in.refuse_at("with"_k, "WITH NO DATA is not supported");
    return made;
  }
  parse_elements(in, made);
  in.refuse_at("as"_k, "CREATE TABLE ... AS takes its columns from the query");
  parse_inherits(in, made);
  return made;
}

}  // namespace ovsql::syntax
