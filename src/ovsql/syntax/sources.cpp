#include "ovsql/syntax/sources.hpp"

#include "ovsql/syntax/expressions.hpp"
#include "ovsql/syntax/queries.hpp"

namespace ovsql::syntax {
namespace {

// [AS] name [(a, b)]
void parse_alias(reader& in, source& of) {
  if (!in.accept("as"_k) && !in.at_name()) return;
  of.alias = in.take_name("a name");
  if (in.at(token_kind::open)) of.columns = in.take_names_in_brackets("a column");
}

const source* finish(reader& in, source& made, std::uint32_t begin) {
  parse_alias(in, made);
  made.at = in.from(begin);
  return in.trees.make(made);
}

const source* parse_table(reader& in) {
  source made{};
  const name table = in.take_dotted_name("a table or \"(\"");
  if (in.at(token_kind::open)) in.refuse("functions in FROM are not supported", table.at);
  made.is = named_source{table};
  const source* const finished = finish(in, made, table.at.begin);
  in.refuse_at("not"_k, "a query names no index here");
  return finished;
}

const source* finish_query(reader& in, const query* of, std::uint32_t begin, bool lateral) {
  source made{};
  in.expect_close();
  made.is = query_source{of, lateral};
  return finish(in, made, begin);
}

// (SELECT ...), or a join in brackets. ((SELECT ...) UNION ...) looks like the latter at first.
const source* parse_source_in_brackets(reader& in) {
  const std::uint32_t begin = in.take().at.begin;
  if (begins_query(in)) return finish_query(in, parse_query(in), begin, false);
  const source* const inside = parse_source(in);
  const auto* const only = std::get_if<query_source>(&inside->is);
  if (only != nullptr && !only->lateral && inside->alias.text.empty()) {
    return finish_query(in, continue_query(in, *only->of), begin, false);
  }
  if (!in.at(token_kind::close)) in.fail_expected("a join or \")\"");
  in.take();
  if (in.at("as"_k) || in.at_name()) in.refuse("brackets around a join have no name of their own", in.now().at);
  return inside;
}

const source* parse_lateral(reader& in) {
  const std::uint32_t begin = in.take().at.begin;
  if (!in.at(token_kind::open)) in.fail_expected("\"(\" and a query");
  in.take();
  return finish_query(in, parse_query(in), begin, true);
}

const source* parse_joined_operand(reader& in) {
  in.require_stack();
  if (in.at(token_kind::open)) return parse_source_in_brackets(in);
  if (in.at("lateral"_k)) return parse_lateral(in);
  return parse_table(in);
}

bool at_join(const reader& in) {
  return in.at("join"_k) || in.at("natural"_k) || in.at("cross"_k) || in.at("inner"_k) || in.at("left"_k) ||
         in.at("right"_k) || in.at("full"_k);
}

join_kind take_join_kind(reader& in) {
  if (in.accept("inner"_k)) return join_kind::inner;
  join_kind kind = join_kind::inner;
  if (in.accept("left"_k)) {
    kind = join_kind::left;
  } else if (in.accept("right"_k)) {
    kind = join_kind::right;
  } else if (in.accept("full"_k)) {
    kind = join_kind::full;
  } else {
    return kind;
  }
  in.accept("outer"_k);
  return kind;
}

const source* parse_join(reader& in, const source* left);

// ON condition, USING (a, b). Before it, the right side may be joined further: a JOIN b JOIN c ON x ON y.
void parse_condition(reader& in, joined_source& of) {
  while (at_join(in)) of.right = parse_join(in, of.right);
  if (in.accept("on"_k)) {
    of.on = parse_expression(in);
    return;
  }
  if (!in.accept("using"_k)) in.fail_expected("ON or USING");
  of.using_names = in.take_names_in_brackets("a column");
  in.refuse_at("as"_k, "a name for the columns of USING is not supported");
}

const source* parse_join(reader& in, const source* left) {
  in.require_stack();
  joined_source made{};
  made.left = left;
  made.natural = in.accept("natural"_k);
  const bool is_cross = !made.natural && in.accept("cross"_k);
  made.kind = is_cross ? join_kind::cross : take_join_kind(in);
  in.expect("join"_k, "JOIN");
  made.right = parse_joined_operand(in);
  if (!is_cross && !made.natural) parse_condition(in, made);
  return in.trees.make(source{made, {}, {}, in.from(left->at.begin)});
}

}  // namespace

const source* parse_source(reader& in) {
  const source* left = parse_joined_operand(in);
  while (at_join(in)) left = parse_join(in, left);
  return left;
}

}  // namespace ovsql::syntax
