#include "ovsql/syntax/primaries.hpp"

#include <algorithm>
#include <charconv>

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/calls.hpp"
#include "ovsql/syntax/queries.hpp"
#include "ovsql/syntax/types.hpp"

namespace ovsql::syntax {
namespace {

constexpr std::uint32_t most_parameters = 65535;

draft parse_question_mark(reader& in) {
  const place at = in.take().at;
  if (in.question_marks == most_parameters) throw error(error_kind::limit, "there are too many parameters", at.begin);
  return make_draft(in, parameter{++in.question_marks, {}}, at);
}

draft parse_parameter_number(reader& in) {
  const place at = in.take().at;
  const std::string_view digits = in.text_of(at).substr(1);
  std::uint32_t number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (read.ec != std::errc() || number == 0 || number > most_parameters) {
    throw error(error_kind::syntax, "parameters have numbers from 1 to 65535", at.begin);
  }
  in.question_marks = std::max(in.question_marks, number);
  return make_draft(in, parameter{number, {}}, at);
}

draft parse_parameter_name(reader& in) {
  const place at = in.take().at;
  return make_draft(in, parameter{0, in.text_of(at).substr(1)}, at);
}

draft parse_number(reader& in) {
  const place at = in.take().at;
  return make_draft(in, number_literal{in.text_of(at)}, at);
}

draft parse_text(reader& in) {
  const place at = in.now().at;
  return make_draft(in, text_literal{in.take_text("a text")}, at);
}

draft parse_binary_literal(reader& in) {
  const place at = in.now().at;
  return make_draft(in, binary_literal{in.take_binary()}, at);
}

template <class T>
draft parse_word_literal(reader& in, T is) {
  return make_draft(in, is, in.take().at);
}

draft parse_unary(reader& in, unary_operator op, level operand_level) {
  const place sign = in.take().at;
  const expression* const operand = parse_expression(in, operand_level);
  return make_draft(in, unary{op, operand}, in.from(sign.begin));
}

draft end_scalar_query(reader& in, const query* of, std::uint32_t begin) {
  in.expect_close();
  return make_draft(in, scalar_query{of}, in.from(begin));
}

// (a + b), (SELECT ...), and ((SELECT ...) UNION ...), whose first bracket looks like one around an expression.
draft parse_brackets(reader& in) {
  const std::uint32_t begin = in.take().at.begin;
  if (begins_query(in)) return end_scalar_query(in, parse_query(in), begin);
  draft inside = parse_operand(in, level::disjunction);
  if (inside.whole != nullptr && continues_query(in)) {
    if (const auto* const first = std::get_if<scalar_query>(&inside.whole->is)) {
      return end_scalar_query(in, continue_query(in, *first->of), begin);
    }
  }
  if (!in.at(token_kind::close)) in.fail_expected("an operator or \")\"");
  in.take();
  inside.at = in.from(begin);
  if (inside.whole != nullptr) inside.whole->at = inside.at;
  return inside;
}

case_branch parse_branch(reader& in) {
  in.expect("when"_k, "WHEN");
  const expression* const condition = parse_expression(in);
  in.expect("then"_k, "an operator or THEN");
  return {condition, parse_expression(in)};
}

draft parse_case(reader& in) {
  const std::uint32_t begin = in.take().at.begin;
  const expression* const operand = in.at("when"_k) ? nullptr : parse_expression(in);
  const std::size_t first = in.lists.top();
  do {
    in.lists.push(parse_branch(in));
  } while (in.at("when"_k));
  const auto branches = in.lists.keep<case_branch>(first, in.trees);
  const expression* const otherwise = in.accept("else"_k) ? parse_expression(in) : nullptr;
  in.expect("end"_k, otherwise == nullptr ? "an operator, WHEN, ELSE or END" : "an operator or END");
  return make_draft(in, conditional{operand, branches, otherwise}, in.from(begin));
}

draft parse_cast_call(reader& in) {
  const std::uint32_t begin = in.take().at.begin;
  in.expect(token_kind::open, "\"(\"");
  const expression* const operand = parse_expression(in);
  in.expect("as"_k, "an operator or AS");
  const type_name to = parse_type(in);
  in.expect_close();
  return make_draft(in, cast{operand, to}, in.from(begin));
}

draft parse_exists(reader& in) {
  const std::uint32_t begin = in.take().at.begin;
  const query* const of = parse_query_in_brackets(in);
  return make_draft(in, exists{of}, in.from(begin));
}

// A reserved word that begins an expression.
draft parse_reserved(reader& in) {
  switch (in.now().word) {
    case "null"_k:
      return parse_word_literal(in, null_literal{});
    case "true"_k:
      return parse_word_literal(in, truth_literal{true});
    case "false"_k:
      return parse_word_literal(in, truth_literal{false});
    case "not"_k:
      return parse_unary(in, unary_operator::negation, level::negation);
    case "case"_k:
      return parse_case(in);
    case "cast"_k:
      return parse_cast_call(in);
    case "left"_k:
    case "right"_k:
      if (in.after_now().kind == token_kind::open) return parse_call(in, in.take_label("a function"));
      break;
    case "default"_k:
      in.refuse("DEFAULT is no value here: leave the column out", in.now().at);
    default:
      break;
  }
  in.fail_expected("a column or an expression");
}

draft parse_word(reader& in) {
  if (is_reserved(in.now().word)) return parse_reserved(in);
  if (in.at("exists"_k) && in.after_now().kind == token_kind::open) return parse_exists(in);
  return parse_name_or_call(in);
}

}  // namespace

draft parse_primary(reader& in) {
  switch (in.now().kind) {
    case token_kind::word:
      return parse_word(in);
    case token_kind::quoted_name:
      return parse_name_or_call(in);
    case token_kind::number:
      return parse_number(in);
    case token_kind::text:
    case token_kind::escaped_text:
    case token_kind::dollar_text:
      return parse_text(in);
    case token_kind::binary:
      return parse_binary_literal(in);
    case token_kind::question_mark:
      return parse_question_mark(in);
    case token_kind::parameter_number:
      return parse_parameter_number(in);
    case token_kind::parameter_name:
      return parse_parameter_name(in);
    case token_kind::open:
      return parse_brackets(in);
    case token_kind::plus:
      return parse_unary(in, unary_operator::plus, level::sign);
    case token_kind::minus:
      return parse_unary(in, unary_operator::minus, level::sign);
    default:
      in.fail_expected("a column or an expression");
  }
}

}  // namespace ovsql::syntax
