#include "ovsql/syntax/predicates.hpp"

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/queries.hpp"

namespace ovsql::syntax {
namespace {

// a BETWEEN b AND c BETWEEN d AND e
void refuse_second(reader& in, bool is_second) {
  if (!is_second) return;
  throw error(error_kind::syntax, "this operator does not chain: put the one before it into brackets",
              in.now().at.begin);
}

void refuse_second_negatable(reader& in) {
  const keyword word = in.now().word;
  refuse_second(in, is_negatable(word) || (word == "not"_k && is_negatable(in.after_now().word)));
}

draft parse_is_distinct(reader& in, const expression* left, place at, bool negated) {
  in.expect("from"_k, "FROM");
  const expression* const right = parse_expression(in, level::comparison);
  refuse_second(in, in.at("is"_k) || in.at("isnull"_k) || in.at("notnull"_k));
  return make_draft(in, is_distinct{left, right, negated}, in.from(at.begin));
}

draft parse_is_of(reader& in, const expression* operand, place at, bool negated) {
  in.expect(token_kind::open, "\"(\"");
  const name_list types = in.take_list<name>([](reader& from) { return from.take_dotted_name("a type"); });
  in.expect_close();
  return make_draft(in, is_of{operand, types, negated}, in.from(at.begin));
}

truth_test take_truth_test(reader& in) {
  if (in.accept("null"_k)) return truth_test::null;
  if (in.accept("true"_k)) return truth_test::truth;
  if (in.accept("false"_k)) return truth_test::falsehood;
  if (in.accept("unknown"_k)) return truth_test::unknown;
  in.fail_expected("NULL, TRUE, FALSE, UNKNOWN, DISTINCT FROM or OF");
}

draft parse_between(reader& in, const expression* operand, place at, bool negated) {
  const expression* const low = parse_expression(in, level::is);
  in.expect("and"_k, "AND");
  const expression* const high = parse_expression(in, level::other);
  refuse_second_negatable(in);
  return make_draft(in, between{operand, low, high, negated}, in.from(at.begin));
}

draft parse_like(reader& in, const expression* operand, place at, bool negated) {
  const expression* const pattern = parse_expression(in, level::other);
  const expression* const escape = in.accept("escape"_k) ? parse_expression(in, level::other) : nullptr;
  refuse_second_negatable(in);
  return make_draft(in, like{operand, pattern, escape, negated}, in.from(at.begin));
}

draft parse_in_query(reader& in, const expression* operand, place at, bool negated, const query* of) {
  in.expect_close();
  return make_draft(in, in_query{operand, of, negated}, in.from(at.begin));
}

// x IN ((SELECT ...)) is x IN (SELECT ...), as is x IN ((SELECT ...) UNION (SELECT ...)).
draft parse_in_list(reader& in, const expression* operand, place at, bool negated) {
  const std::size_t begin = in.lists.top();
  while (!in.at(token_kind::close)) {
    const expression* const member = parse_expression(in);
    const auto* const only = in.lists.top() == begin ? std::get_if<scalar_query>(&member->is) : nullptr;
    if (only != nullptr && !in.at(token_kind::comma)) {
      return parse_in_query(in, operand, at, negated, continue_query(in, *only->of));
    }
    in.lists.push(member);
    if (!in.at(token_kind::close)) {
      in.expect(token_kind::comma, "a comma or \")\"");
      if (in.at(token_kind::close)) in.fail_expected("an expression");
    }
  }
  const expression_list members = in.lists.keep<const expression*>(begin, in.trees);
  in.take();
  return make_draft(in, in_list{operand, members, negated}, in.from(at.begin));
}

draft parse_in(reader& in, const expression* operand, place at, bool negated) {
  if (in.at_name()) {
    const query* const all = query_of_table(in);
    return make_draft(in, in_query{operand, all, negated}, in.from(at.begin));
  }
  in.expect(token_kind::open, "\"(\"");
  if (begins_query(in)) return parse_in_query(in, operand, at, negated, parse_query(in));
  return parse_in_list(in, operand, at, negated);
}

}  // namespace

bool is_negatable(keyword word) {
  return word == "between"_k || word == "in"_k || word == "like"_k || word == "ilike"_k || word == "similar"_k;
}

draft parse_is(reader& in, const expression* operand, place at) {
  const keyword word = in.take().word;
  if (word != "is"_k) {
    if (word == "not"_k) in.take();
    return make_draft(in, is_test{operand, truth_test::null, word != "isnull"_k}, in.from(at.begin));
  }
  const bool negated = in.accept("not"_k);
  if (in.accept("distinct"_k)) return parse_is_distinct(in, operand, at, negated);
  if (in.accept("of"_k)) return parse_is_of(in, operand, at, negated);
  const truth_test test = take_truth_test(in);
  return make_draft(in, is_test{operand, test, negated}, in.from(at.begin));
}

draft parse_negatable(reader& in, const expression* operand, place at) {
  const bool negated = in.accept("not"_k);
  in.refuse_at("ilike"_k, "there is no ILIKE here: LIKE does not distinguish case");
  in.refuse_at("similar"_k, "SIMILAR TO is not supported");
  const keyword word = in.take().word;
  if (word == "between"_k) return parse_between(in, operand, at, negated);
  if (word == "like"_k) return parse_like(in, operand, at, negated);
  return parse_in(in, operand, at, negated);
}

draft parse_quantified(reader& in, const expression* left, place at, binary_operator op) {
  const bool all = in.take().word == "all"_k;
  const query* const of = parse_query_in_brackets(in);
  return make_draft(in, quantified{op, left, all, of}, in.from(at.begin));
}

}  // namespace ovsql::syntax
