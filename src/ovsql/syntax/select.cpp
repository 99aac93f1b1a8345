#include "ovsql/syntax/select.hpp"

#include "ovsql/syntax/expressions.hpp"
#include "ovsql/syntax/sources.hpp"

namespace ovsql::syntax {
namespace {

select_item parse_item(reader& in) {
  if (in.at(token_kind::star)) {
    const place at = in.take().at;
    return {in.trees.make(expression{all_columns{}, at}), {}};
  }
  select_item made{parse_expression(in), {}};
  if (in.accept("as"_k)) {
    made.alias = in.take_label("a name");
  } else if (in.at_name()) {
    made.alias = in.take_name("a name");
  }
  return made;
}

bool parse_distinct(reader& in) {
  if (!in.accept("distinct"_k)) {
    in.accept("all"_k);
    return false;
  }
  in.refuse_at("on"_k, "DISTINCT ON is not supported");
  return true;
}

void refuse_grouping_sets(const reader& in) {
  const bool is_call = (in.at("rollup"_k) || in.at("cube"_k)) && in.after_now().kind == token_kind::open;
  const bool is_sets = in.at("grouping"_k) && in.after_now().word == "sets"_k;
  if (is_call || is_sets) in.refuse("GROUPING SETS, ROLLUP and CUBE are not supported", in.now().at);
}

const expression* parse_group_key(reader& in) {
  refuse_grouping_sets(in);
  return parse_expression(in);
}

expression_list parse_group_by(reader& in) {
  if (!in.accept("group"_k)) return {};
  in.expect("by"_k, "BY");
  return in.take_list<const expression*>(parse_group_key);
}

}  // namespace

select parse_select(reader& in) {
  in.take();
  select made{};
  made.distinct = parse_distinct(in);
  made.items = in.take_list<select_item>(parse_item);
  in.refuse_at("into"_k, "SELECT INTO is not supported: use CREATE TABLE ... AS");
  if (in.accept("from"_k)) made.from = in.take_list<const source*>(parse_source);
  if (in.accept("where"_k)) made.where = parse_expression(in);
  made.group_by = parse_group_by(in);
  if (in.accept("having"_k)) made.having = parse_expression(in);
  in.refuse_at("window"_k, "window functions are not supported");
  return made;
}

}  // namespace ovsql::syntax
