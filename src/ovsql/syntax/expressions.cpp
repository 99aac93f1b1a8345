#include "ovsql/syntax/expressions.hpp"

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/predicates.hpp"
#include "ovsql/syntax/primaries.hpp"
#include "ovsql/syntax/types.hpp"

namespace ovsql::syntax {
namespace {

// NOT LIKE, and NOT NULL, which is IS NOT NULL.
level level_of_negated(keyword word) {
  if (word == "null"_k) return level::is;
  return is_negatable(word) ? level::between : level::none;
}

level level_of_word(reader& in, keyword word) {
  switch (word) {
    case "or"_k:
      return level::disjunction;
    case "and"_k:
      return level::conjunction;
    case "is"_k:
    case "isnull"_k:
    case "notnull"_k:
      return level::is;
    case "between"_k:
    case "in"_k:
    case "like"_k:
    case "ilike"_k:
    case "similar"_k:
      return level::between;
    case "not"_k:
      return level_of_negated(in.after_now().word);
    case "collate"_k:
      return level::cast;
    default:
      return level::none;
  }
}

// The level of the operator that comes next; none for anything else.
level next_operator(reader& in) {
  switch (in.now().kind) {
    case token_kind::word:
      return level_of_word(in, in.now().word);
    case token_kind::equal:
    case token_kind::not_equal:
    case token_kind::less:
    case token_kind::at_most:
    case token_kind::greater:
    case token_kind::at_least:
      return level::comparison;
    case token_kind::concatenate:
    case token_kind::starts_with:
      return level::other;
    case token_kind::plus:
    case token_kind::minus:
      return level::sum;
    case token_kind::star:
    case token_kind::slash:
    case token_kind::percent:
      return level::product;
    case token_kind::double_colon:
      return level::cast;
    default:
      return level::none;
  }
}

binary_operator binary_of(token_kind sign) {
  switch (sign) {
    case token_kind::plus:
      return binary_operator::add;
    case token_kind::minus:
      return binary_operator::subtract;
    case token_kind::star:
      return binary_operator::multiply;
    case token_kind::slash:
      return binary_operator::divide;
    case token_kind::percent:
      return binary_operator::modulo;
    case token_kind::equal:
      return binary_operator::equal;
    case token_kind::not_equal:
      return binary_operator::not_equal;
    case token_kind::less:
      return binary_operator::less;
    case token_kind::at_most:
      return binary_operator::at_most;
    case token_kind::greater:
      return binary_operator::greater;
    case token_kind::at_least:
      return binary_operator::at_least;
    default:
      return binary_operator::starts_with;
  }
}

// Pushes the operands of a chain, or what is no such chain as one operand; `of` is the topmost list.
void push_operands(reader& in, const draft& of, chain_operator op) {
  const bool are_there = of.whole == nullptr && of.op == op;
  if (!are_there) in.lists.push<const expression*>(settled(in, of));
}

draft parse_chain(reader& in, const draft& left, chain_operator op, level right_level) {
  const std::size_t first = left.whole == nullptr ? left.first : in.lists.top();
  push_operands(in, left, op);
  in.take();
  push_operands(in, parse_operand(in, right_level), op);
  return {nullptr, first, op, in.from(left.at.begin)};
}

draft parse_binary(reader& in, const draft& left, level of) {
  const expression* const first = settled(in, left);
  const token sign = in.take();
  if (of == level::comparison && (in.at("any"_k) || in.at("some"_k) || in.at("all"_k))) {
    return parse_quantified(in, first, left.at, binary_of(sign.kind));
  }
  const expression* const second = parse_expression(in, next_level(of));
  return make_draft(in, binary{binary_of(sign.kind), first, second, sign.at}, in.from(left.at.begin));
}

draft parse_cast(reader& in, const draft& left) {
  in.refuse_at("collate"_k, "there are no collations here");
  const expression* const operand = settled(in, left);
  in.take();
  return make_draft(in, cast{operand, parse_short_type(in)}, in.from(left.at.begin));
}

// What follows the operand on the left.
draft parse_rest(reader& in, const draft& left, level of) {
  switch (of) {
    case level::disjunction:
      return parse_chain(in, left, chain_operator::disjunction, level::conjunction);
    case level::conjunction:
      return parse_chain(in, left, chain_operator::conjunction, level::negation);
    case level::is:
      return parse_is(in, settled(in, left), left.at);
    case level::between:
      return parse_negatable(in, settled(in, left), left.at);
    case level::other:
      if (in.at(token_kind::concatenate)) return parse_chain(in, left, chain_operator::concatenation, level::sum);
      return parse_binary(in, left, of);
    case level::cast:
      return parse_cast(in, left);
    default:
      return parse_binary(in, left, of);
  }
}

// a < b < c
void refuse_second_comparison(reader& in, const draft& left, level of) {
  const bool ends_open = left.whole != nullptr && !std::holds_alternative<quantified>(left.whole->is);
  if (of != level::comparison || !ends_open || next_operator(in) != of) return;
  throw error(error_kind::syntax, "comparisons do not chain: put one into brackets, or join two by AND",
              in.now().at.begin);
}

}  // namespace

expression* settled(reader& in, const draft& of) {
  if (of.whole != nullptr) return of.whole;
  const expression_list operands = in.lists.keep<const expression*>(of.first, in.trees);
  return in.trees.make(expression{chain{of.op, operands}, of.at});
}

draft parse_operand(reader& in, level lowest) {
  in.require_stack();
  draft left = parse_primary(in);
  while (true) {
    const level of = next_operator(in);
    if (of == level::none || of < lowest) return left;
    left = parse_rest(in, left, of);
    refuse_second_comparison(in, left, of);
  }
}

}  // namespace ovsql::syntax
