#include "ovsql/syntax/calls.hpp"

#include "ovsql/syntax/literals.hpp"

namespace ovsql::syntax {
namespace {

// FILTER (WHERE ...), or null.
const expression* parse_filter(reader& in) {
  if (!in.at("filter"_k) || in.after_now().kind != token_kind::open) return nullptr;
  in.take();
  in.take();
  in.expect("where"_k, "WHERE");
  const expression* const condition = parse_expression(in);
  in.expect_close();
  return condition;
}

void parse_arguments(reader& in, call& of) {
  of.star = in.accept(token_kind::star);
  if (of.star || in.at(token_kind::close)) return;
  of.distinct = in.accept("distinct"_k);
  if (!of.distinct) in.accept("all"_k);
  of.arguments = parse_expressions(in);
  in.refuse_at("order"_k, "ORDER BY among the arguments of a function is not supported");
}

}  // namespace

draft parse_call(reader& in, name function) {
  const std::uint32_t begin = function.at.begin;
  call made{{lower_case(function.text, in.trees), function.at}, {}, false, false, nullptr};
  in.expect(token_kind::open, "\"(\"");
  parse_arguments(in, made);
  if (!in.accept(token_kind::close)) {
    in.fail_expected(made.star ? "\")\"" : "a comma, an operator or \")\"");
  }
  in.refuse_at("within"_k, "WITHIN GROUP is not supported");
  made.filter = parse_filter(in);
  in.refuse_at("over"_k, "window functions are not supported");
  return make_draft(in, made, in.from(begin));
}

draft parse_name_or_call(reader& in) {
  const name first = in.take_name("a column");
  if (in.at(token_kind::open)) return parse_call(in, first);
  const std::size_t begin = in.lists.top();
  in.lists.push(first);
  while (in.accept(token_kind::dot)) {
    if (in.accept(token_kind::star)) {
      return make_draft(in, all_columns{in.lists.keep<name>(begin, in.trees)}, in.from(first.at.begin));
    }
    in.lists.push(in.take_label("a column or \"*\""));
  }
  const name_list parts = in.lists.keep<name>(begin, in.trees);
  if (in.at(token_kind::open)) in.refuse("a function has a name without points", first.at);
  return make_draft(in, column{parts}, in.from(first.at.begin));
}

}  // namespace ovsql::syntax
