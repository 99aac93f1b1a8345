#include "ovsql/syntax/queries.hpp"

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/expressions.hpp"
#include "ovsql/syntax/select.hpp"

namespace ovsql::syntax {
namespace {

query in_brackets(reader& in) {
  in.take();
  const query inside = *parse_query(in);
  if (!in.at(token_kind::close)) in.fail_expected("\")\"");
  in.take();
  return inside;
}

expression_list parse_row(reader& in) {
  in.expect(token_kind::open, "\"(\"");
  const expression_list row = parse_expressions(in);
  if (!in.at(token_kind::close)) in.fail_expected("a comma, an operator or \")\"");
  in.take();
  return row;
}

values parse_values(reader& in) {
  in.take();
  return {in.take_list<expression_list>(parse_row)};
}

// One operand of UNION, EXCEPT and INTERSECT.
query parse_term(reader& in) {
  query made{};
  const std::uint32_t begin = in.now().at.begin;
  if (in.at(token_kind::open)) return in_brackets(in);
  if (in.at("select"_k)) {
    made.body = parse_select(in);
  } else if (in.at("values"_k)) {
    made.body = parse_values(in);
  } else if (in.accept("table"_k)) {
    return *query_of_table(in);
  } else {
    in.fail_expected("SELECT, VALUES, TABLE or \"(\"");
  }
  made.at = in.from(begin);
  return made;
}

// ALL or DISTINCT behind an operator.
bool accept_all(reader& in) {
  if (in.accept("all"_k)) return true;
  in.accept("distinct"_k);
  return false;
}

query join_terms(reader& in, set_operator op, const query& left, query (*parse_right)(reader&)) {
  const place sign = in.take().at;
  const bool all = accept_all(in);
  const query* const first = in.trees.make(left);
  const query* const second = in.trees.make(parse_right(in));
  query made{};
  made.body = set_operation{op, all, first, second, sign};
  made.at = in.from(left.at.begin);
  return made;
}

query continue_intersect(reader& in, query left) {
  while (in.at("intersect"_k)) left = join_terms(in, set_operator::intersect, left, parse_term);
  return left;
}

query parse_intersect(reader& in) { return continue_intersect(in, parse_term(in)); }

query continue_union(reader& in, query left) {
  while (in.at("union"_k) || in.at("except"_k)) {
    const set_operator op = in.at("union"_k) ? set_operator::union_of : set_operator::except;
    left = join_terms(in, op, left, parse_intersect);
  }
  return left;
}

query parse_union(reader& in) { return continue_union(in, parse_intersect(in)); }

common_table parse_common_table(reader& in) {
  common_table made{};
  made.table = in.take_name("a name for a common table");
  if (in.at(token_kind::open)) made.columns = in.take_names_in_brackets("a column");
  in.expect("as"_k, "AS");
  if (in.accept("not"_k) && !in.at("materialized"_k)) in.fail_expected("MATERIALIZED");
  in.accept("materialized"_k);
  made.of = parse_query_in_brackets(in);
  return made;
}

std::span<const common_table> parse_with(reader& in) {
  if (!in.accept("with"_k)) return {};
  in.refuse_at("recursive"_k, "WITH RECURSIVE is not supported");
  return in.take_list<common_table>(parse_common_table);
}

std::optional<bool> accept_nulls(reader& in) {
  if (!in.accept("nulls"_k)) return std::nullopt;
  if (in.accept("first"_k)) return true;
  in.expect("last"_k, "FIRST or LAST");
  return false;
}

order_item parse_order_item(reader& in) {
  order_item made{};
  made.key = parse_expression(in);
  made.descending = in.accept("desc"_k);
  if (!made.descending) in.accept("asc"_k);
  made.nulls_first = accept_nulls(in);
  return made;
}

// An inner query in brackets and what follows it may not both say it.
void refuse_twice(bool is_there, const char* clause, place at) {
  if (!is_there) return;
  throw error(error_kind::syntax, std::string("there is a second ") + clause + " here", at.begin);
}

void parse_order(reader& in, query& of) {
  const place at = in.take().at;
  refuse_twice(!of.order_by.empty(), "ORDER BY", at);
  in.expect("by"_k, "BY");
  of.order_by = in.take_list<order_item>(parse_order_item);
}

// FIRST 5 ROWS ONLY
const expression* parse_fetch(reader& in) {
  if (!in.accept("next"_k)) in.expect("first"_k, "FIRST or NEXT");
  const bool says_one = in.at("row"_k) || in.at("rows"_k);
  const expression* const count =
      says_one ? in.trees.make(expression{number_literal{"1"}, in.now().at}) : parse_expression(in, level::sum);
  if (!in.accept("rows"_k)) in.expect("row"_k, "ROW or ROWS");
  in.expect("only"_k, "ONLY");
  return count;
}

// LIMIT and FETCH. has_limit: whether there was one, be it LIMIT ALL.
void parse_limit(reader& in, query& of, bool& has_limit) {
  const token word = in.take();
  refuse_twice(has_limit || of.limit != nullptr, "LIMIT", word.at);
  has_limit = true;
  if (word.word == "fetch"_k) {
    of.limit = parse_fetch(in);
  } else if (!in.accept("all"_k)) {
    of.limit = parse_expression(in);
  }
}

void parse_offset(reader& in, query& of) {
  refuse_twice(of.offset != nullptr, "OFFSET", in.take().at);
  of.offset = parse_expression(in);
  if (!in.accept("rows"_k)) in.accept("row"_k);
}

// ORDER BY, LIMIT and OFFSET.
void parse_tail(reader& in, query& of) {
  bool has_limit = false;
  if (in.at("order"_k)) parse_order(in, of);
  while (true) {
    if (in.at("limit"_k) || in.at("fetch"_k)) {
      parse_limit(in, of, has_limit);
    } else if (in.at("offset"_k)) {
      parse_offset(in, of);
    } else {
      break;
    }
  }
  in.refuse_at("for"_k, "FOR UPDATE and its like are not supported");
  of.at.end = in.end_of_last();
}

}  // namespace

bool begins_query(const reader& in) {
  if (in.at("values"_k)) return in.after_now().kind == token_kind::open;
  return in.at("select"_k) || in.at("with"_k) || in.at("table"_k);
}

bool continues_query(const reader& in) {
  return in.at("union"_k) || in.at("except"_k) || in.at("intersect"_k) || in.at("order"_k) || in.at("limit"_k) ||
         in.at("offset"_k) || in.at("fetch"_k);
}

const query* parse_query(reader& in) {
  in.require_stack();
  const place begin = in.now().at;
  const auto with = parse_with(in);
  query made = parse_union(in);
  if (!with.empty()) {
    refuse_twice(!made.with.empty(), "WITH", begin);
    made.with = with;
    made.at.begin = begin.begin;
  }
  parse_tail(in, made);
  return in.trees.make(made);
}

const query* continue_query(reader& in, const query& first) {
  query made = continue_union(in, continue_intersect(in, first));
  parse_tail(in, made);
  return in.trees.make(made);
}

const query* parse_query_in_brackets(reader& in) {
  in.expect(token_kind::open, "\"(\" and a query");
  const query* const of = parse_query(in);
  if (!in.at(token_kind::close)) in.fail_expected("the rest of the query or \")\"");
  in.take();
  return of;
}

const query* query_of_table(reader& in) {
  const name table = in.take_dotted_name("a table");
  const select_item all{in.trees.make(expression{all_columns{}, table.at}), {}};
  const source* const from = in.trees.make(source{named_source{table}, {}, {}, table.at});
  select made{};
  made.items = {in.trees.make(all), 1};
  made.from = {in.trees.make(from), 1};
  query whole{};
  whole.body = made;
  whole.at = table.at;
  return in.trees.make(whole);
}

}  // namespace ovsql::syntax
