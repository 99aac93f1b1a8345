#include "ovsql/syntax/definitions.hpp"

#include "ovsql/syntax/queries.hpp"

namespace ovsql::syntax {
namespace {

index_key parse_index_key(reader& in) {
  if (in.at(token_kind::open)) in.refuse("an index of expressions is not supported", in.now().at);
  index_key made{in.take_name("a column"), false};
  if (in.at(token_kind::open)) in.refuse("an index of expressions is not supported", made.column.at);
  made.descending = in.accept("desc"_k);
  if (!made.descending) in.accept("asc"_k);
  in.refuse_at("nulls"_k, "an index keeps NULL below all values");
  return made;
}

create_index parse_create_index(reader& in, bool unique) {
  create_index made{};
  in.take();
  made.unique = unique;
  made.if_not_exists = accept_if_not_exists(in);
  made.index = in.take_dotted_name("a name for the index");
  in.expect("on"_k, "ON");
  made.table = in.take_dotted_name("a table");
  in.refuse_at("using"_k, "there is one kind of index; leave USING out");
  in.expect(token_kind::open, "\"(\"");
  made.keys = in.take_list<index_key>(parse_index_key);
  if (!in.at(token_kind::close)) in.fail_expected("a comma, ASC, DESC or \")\"");
  in.take();
  in.refuse_at("where"_k, "an index of some rows only is not supported");
  return made;
}

create_view parse_create_view(reader& in, bool or_replace) {
  create_view made{};
  in.take();
  made.or_replace = or_replace;
  made.if_not_exists = accept_if_not_exists(in);
  made.view = in.take_dotted_name("a name for the view");
  if (in.at(token_kind::open)) made.columns = in.take_names_in_brackets("a column");
  in.expect("as"_k, "AS");
  made.of = parse_query(in);
  in.refuse_at("with"_k, "WITH CHECK OPTION is not supported");
  return made;
}

bool accept_or_replace(reader& in) {
  if (!in.accept("or"_k)) return false;
  in.expect("replace"_k, "REPLACE");
  return true;
}

// What is temporary lives as long as everything else: in memory.
bool accept_temporary(reader& in) { return in.accept("temp"_k) || in.accept("temporary"_k); }

statement_variant skip_or_fail(reader& in, std::string_view verb) {
  if (in.now().kind != token_kind::word) in.fail_expected("TABLE, INDEX or VIEW");
  return in.skip(verb);
}

bool accept_if_exists(reader& in) {
  if (!in.at("if"_k) || in.after_now().word != "exists"_k) return false;
  in.take();
  in.take();
  return true;
}

}  // namespace

bool accept_if_not_exists(reader& in) {
  if (!in.at("if"_k) || in.after_now().word != "not"_k) return false;
  in.take();
  in.take();
  in.expect("exists"_k, "EXISTS");
  return true;
}

statement_variant parse_create(reader& in) {
  in.take();
  const bool or_replace = accept_or_replace(in);
  const bool temporary = accept_temporary(in);
  if (in.at("view"_k)) return parse_create_view(in, or_replace);
  if (or_replace) return skip_or_fail(in, "CREATE OR REPLACE ");
  if (in.accept("table"_k)) return parse_create_table(in);
  if (temporary) return skip_or_fail(in, "CREATE TEMPORARY ");
  if (in.at("index"_k)) return parse_create_index(in, false);
  if (!in.accept("unique"_k)) return skip_or_fail(in, "CREATE ");
  if (!in.at("index"_k)) in.fail_expected("INDEX");
  return parse_create_index(in, true);
}

statement_variant parse_drop(reader& in) {
  in.take();
  drop made{};
  if (in.at("index"_k)) {
    made.what = dropped::index;
  } else if (in.at("view"_k)) {
    made.what = dropped::view;
  } else if (!in.at("table"_k)) {
    return skip_or_fail(in, "DROP ");
  }
  in.take();
  made.if_exists = accept_if_exists(in);
  made.names = in.take_list<name>([](reader& from) { return from.take_dotted_name("a name"); });
  in.refuse_at("cascade"_k, "DROP ... CASCADE is not supported");
  in.accept("restrict"_k);
  return made;
}

}  // namespace ovsql::syntax
