#include "ovsql/syntax/statements.hpp"

#include <algorithm>
#include <iterator>

#include "ovsql/syntax/copying.hpp"
#include "ovsql/syntax/definitions.hpp"
#include "ovsql/syntax/literals.hpp"
#include "ovsql/syntax/queries.hpp"

namespace ovsql::syntax {
namespace {

// Begin statements that are not done here.
constexpr keyword other_verbs[] = {
    "abort"_k,    "alter"_k,   "analyze"_k,  "attach"_k,   "begin"_k,      "call"_k,     "checkpoint"_k,
    "close"_k,    "cluster"_k, "comment"_k,  "commit"_k,   "deallocate"_k, "declare"_k,  "delete"_k,
    "describe"_k, "detach"_k,  "discard"_k,  "do"_k,       "end"_k,        "execute"_k,  "fetch"_k,
    "grant"_k,    "import"_k,  "listen"_k,   "load"_k,     "lock"_k,       "merge"_k,    "move"_k,
    "notify"_k,   "pragma"_k,  "prepare"_k,  "reassign"_k, "refresh"_k,    "reindex"_k,  "release"_k,
    "replace"_k,  "reset"_k,   "revoke"_k,   "rollback"_k, "savepoint"_k,  "security"_k, "set"_k,
    "show"_k,     "start"_k,   "truncate"_k, "unlisten"_k, "update"_k,     "use"_k,      "vacuum"_k};

bool is_other_verb(keyword word) {
  return std::find(std::begin(other_verbs), std::end(other_verbs), word) != std::end(other_verbs);
}

// Whether the bracket here holds names, not a query.
bool names_follow(const reader& in) {
  const token first = in.after_now();
  if (first.word == "values"_k) return in.after(first).kind != token_kind::open;
  return first.kind == token_kind::quoted_name || (first.kind == token_kind::word && !is_reserved(first.word));
}

insert parse_insert(reader& in) {
  insert made{};
  in.expect("into"_k, "INTO");
  made.table = in.take_dotted_name("a table");
  if (in.at("default"_k)) {
    in.take();
    in.expect("values"_k, "VALUES");
    return made;
  }
  if (in.at(token_kind::open) && names_follow(in)) made.columns = in.take_names_in_brackets("a column");
  if (!begins_query(in) && !in.at(token_kind::open)) in.fail_expected("VALUES, a query or the columns in brackets");
  made.rows = parse_query(in);
  in.refuse_at("on"_k, "ON CONFLICT is not supported");
  in.refuse_at("returning"_k, "RETURNING is not supported");
  return made;
}

explain_format take_format(reader& in) {
  const place at = in.now().at;
  const std::string_view word = lower_case(in.take_label("text, dot or json").text, in.trees);
  if (word == "text") return explain_format::text;
  if (word == "dot") return explain_format::dot;
  if (word == "json") return explain_format::json;
  in.refuse("the formats of EXPLAIN are text, dot and json", at);
}

explain parse_explain(reader& in) {
  explain made{nullptr, explain_format::text};
  in.take();
  if (in.at(token_kind::open) && in.after_now().word == "format"_k) {
    in.take();
    in.take();
    made.format = take_format(in);
    in.expect_close();
  }
  if (!begins_query(in) && !in.at(token_kind::open)) in.refuse("EXPLAIN explains queries only", in.now().at);
  made.of = parse_query(in);
  return made;
}

statement_variant parse_insert_or_skip(reader& in) {
  in.take();
  if (!in.accept("or"_k)) return parse_insert(in);
  return in.skip("INSERT OR ");
}

}  // namespace

statement_variant parse_statement(reader& in) {
  if (in.at(token_kind::open) || begins_query(in)) return parse_query(in);
  switch (in.now().word) {
    case "create"_k:
      return parse_create(in);
    case "drop"_k:
      return parse_drop(in);
    case "insert"_k:
      return parse_insert_or_skip(in);
    case "copy"_k:
      return parse_copy(in);
    case "explain"_k:
      return parse_explain(in);
    default:
      break;
  }
  if (is_other_verb(in.now().word)) return in.skip({});
  in.fail_expected("a statement");
}

}  // namespace ovsql::syntax
