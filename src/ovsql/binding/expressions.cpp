#include <string>

#include "ov_sql_executor/values/value.hpp"
#include "ovhost/plans/expressions.hpp"
#include "ovhost/values/text.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/binding/stack_room.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {

using ovhost::lit;

namespace {

using namespace physical_queryplan;

// Says of operations whether they may fail while they are evaluated.
struct judge {
  bool operator()(const operation&) const { return true; }
  bool operator()(const And&) const { return false; }
  bool operator()(const Or&) const { return false; }
  bool operator()(const Not&) const { return false; }
  bool operator()(const NullTest&) const { return false; }
  bool operator()(const NotNullTest&) const { return false; }
  bool operator()(const Equality&) const { return false; }
  bool operator()(const Inequality&) const { return false; }
  bool operator()(const AtMost&) const { return false; }
  bool operator()(const Less&) const { return false; }
  bool operator()(const Greater&) const { return false; }
  bool operator()(const AtLeast&) const { return false; }
  bool operator()(const Concatenation&) const { return false; }
  bool operator()(const Conditional& held) const {
    // A conversion may fail, unless it is one to the same type, which nothing here shows, or to double.
    return !std::holds_alternative<meta_support::TypeIdentity<double>>(held.result_type) &&
           !std::holds_alternative<meta_support::TypeIdentity<bool>>(held.result_type) &&
           !std::holds_alternative<meta_support::TypeIdentity<db_string::tt_string>>(held.result_type);
  }
  bool operator()(const ToDouble&) const { return false; }
  template <class Column>
  bool operator()(const Column&) const {
    return false;
  }
};

}  // namespace

struct expression_visitor {
  binder& in;
  const syntax::expression& written;
  const expression_site& site;

  bound bind(const syntax::expression* of) const { return in.bind(*of, site); }
  bound made(expression value, value_kind kind, std::uint32_t size = 1) const {
    return {std::move(value), kind, written.at, nullptr, {}, size};
  }

  bound operator()(const syntax::null_literal&) const { return made(ovhost::null(), value_kind::null); }
  bound operator()(const syntax::truth_literal& of) const { return made(lit(of.value), value_kind::boolean); }
  bound operator()(const syntax::number_literal& of) const { return number(of.digits, written.at); }
  bound operator()(const syntax::text_literal& of) const {
    if (of.utf8.find('\0') != std::string_view::npos) {
      throw error(error_kind::value, "a text cannot hold a zero character", written.at.begin);
    }
    return made(ovhost::text(of.utf8), value_kind::text);
  }
  bound operator()(const syntax::binary_literal& of) const {
    return made(lit(operator_library::Binary{{of.bytes.begin(), of.bytes.end()}}), value_kind::binary);
  }
  bound operator()(const syntax::parameter& of) const { return in.bind_as(of, written.at); }
  bound operator()(const syntax::column& of) const { return in.bind_column(of, written.at, site); }
  bound operator()(const syntax::all_columns&) const {
    throw error(error_kind::syntax, "* stands for columns in the list after SELECT and in count(*) only",
                written.at.begin);
  }

  bound operator()(const syntax::unary& of) const {
    if (of.op == syntax::unary_operator::negation) return negate(as_truth(bind(of.operand), "NOT"));
    const bool minus = of.op == syntax::unary_operator::minus;
    if (const auto* const digits = std::get_if<syntax::number_literal>(&of.operand->is); digits != nullptr && minus) {
      return negative_number(digits->digits);
    }
    bound operand = as_number(bind(of.operand), minus ? "-" : "+");
    operand.at = written.at;
    operand.digits = {};
    if (!minus) return operand;
    if (operand.kind == value_kind::uint64) operand.kind = value_kind::int64;
    operand.value = ovhost::neg(std::move(operand.value));
    ++operand.size;
    return operand;
  }
  // As one literal, since the smallest integer has no positive counterpart.
  bound negative_number(std::string_view digits) const {
    const std::string_view kept = in.names_.keep("-" + std::string(digits));
    return number(kept, written.at);
  }

  bound operator()(const syntax::binary& of) const {
    using enum syntax::binary_operator;
    switch (of.op) {
      case add:
      case subtract:
      case multiply:
      case divide:
      case modulo:
        return in.bind_arithmetic(written, site);
      case starts_with: {
        bound left = as_text(bind(of.left), "^@");
        bound right = as_text(bind(of.right), "^@");
        const std::uint32_t size = left.size + right.size + 1;
        return made(ovhost::starts_with(std::move(left.value), std::move(right.value)), value_kind::boolean, size);
      }
      default: {
        bound left = bind(of.left);
        return compare(of.op, std::move(left), bind(of.right), of.sign);
      }
    }
  }

  bound operator()(const syntax::chain& of) const { return in.bind_chain(of, written.at, site); }

  bound operator()(const syntax::is_test& of) const {
    bound operand = bind(of.operand);
    const std::uint32_t size = operand.size + 3;
    if (of.test == syntax::truth_test::null) {
      expression test =
          of.negated ? ovhost::is_not_null(std::move(operand.value)) : ovhost::is_null(std::move(operand.value));
      return made(std::move(test), value_kind::boolean, size);
    }
    operand = as_truth(std::move(operand), "IS");
    bound result = made(expression(), value_kind::boolean, size);
    if (of.test == syntax::truth_test::unknown) {
      result.value = ovhost::is_null(std::move(operand.value));
    } else {
      if (of.test == syntax::truth_test::falsehood) operand = negate(std::move(operand));
      result.value = ovhost::when_as(value_kind::boolean, std::move(operand.value), lit(true), lit(false));
    }
    return of.negated ? negate(std::move(result)) : result;
  }

  bound operator()(const syntax::is_distinct& of) const {
    bound left = in.share(bind(of.left), site);
    bound right = in.share(bind(of.right), site);
    const bound equality = compare(syntax::binary_operator::equal, left, right, written.at);
    expression if_present = ovhost::when_as(value_kind::boolean, equality.value, lit(true), lit(false));
    bound result = made(ovhost::when_as(value_kind::boolean, ovhost::is_null(left.value), ovhost::is_null(right.value),
                                        std::move(if_present)),
                        value_kind::boolean, 2 * (left.size + right.size) + 5);
    return of.negated ? result : negate(std::move(result));
  }

  bound operator()(const syntax::is_of& of) const { return in.bind_is_of(of, written.at, site); }

  bound operator()(const syntax::between& of) const {
    using enum syntax::binary_operator;
    const bound operand = in.share(bind(of.operand), site);
    bound low = compare(at_least, operand, bind(of.low), written.at);
    bound high = compare(at_most, operand, bind(of.high), written.at);
    bound result = made(expression(), value_kind::boolean, low.size + high.size + 1);
    result.value = ovhost::both(std::move(low.value), std::move(high.value));
    return of.negated ? negate(std::move(result)) : result;
  }

  bound operator()(const syntax::like& of) const { return in.bind_like(of, written.at, site); }
  bound operator()(const syntax::in_list& of) const { return in.bind_in_list(of, written.at, site); }
  bound operator()(const syntax::in_query& of) const {
    bound found = in.bind_quantified(*of.operand, syntax::binary_operator::equal, false, *of.of, written.at, site);
    return of.negated ? negate(std::move(found)) : found;
  }
  bound operator()(const syntax::exists& of) const { return in.bind_exists(*of.of, written.at, site); }
  bound operator()(const syntax::quantified& of) const {
    return in.bind_quantified(*of.left, of.op, of.all, *of.of, written.at, site);
  }
  bound operator()(const syntax::scalar_query& of) const { return in.bind_scalar_query(*of.of, written.at, site); }
  bound operator()(const syntax::conditional& of) const { return in.bind_case(of, written.at, site); }
  bound operator()(const syntax::cast& of) const { return in.bind_cast(of, written.at, site); }
  bound operator()(const syntax::call& of) const { return in.bind_call(of, written.at, site); }
};

bound binder::bind(const syntax::expression& written, const expression_site& at) {
  require_room(written.at.begin);
  if (at.scope->groups != nullptr) {
    if (auto key = as_group_key(written, at)) return *std::move(key);
  }
  return std::visit(expression_visitor{*this, written, at}, written.is);
}

bound binder::bind_constant(const syntax::expression& written, std::string_view clause) {
  select_scope empty;
  return bind(written, {&empty, nullptr, nullptr, clause});
}

// A parameter is of the type of its value, where that is known.
bound binder::bind_as(const syntax::parameter& written, syntax::place at) {
  const std::size_t number = names_.parameter(written, numbered_parameters_);
  const value_kind kind = names_.kind_of_parameter(number);
  return {ovhost::parameter(number, kind), kind, at};
}

bound binder::bind_chain(const syntax::chain& written, syntax::place at, const expression_site& site) {
  const bool is_text = written.op == syntax::chain_operator::concatenation;
  const std::string_view use = is_text ? "||" : written.op == syntax::chain_operator::conjunction ? "AND" : "OR";
  std::vector<expression> operands;
  operands.reserve(written.operands.size());
  bound made{expression(), is_text ? value_kind::text : value_kind::boolean, at};
  expression_site rest = site;
  for (std::size_t next = 0; next < written.operands.size();) {
    bound operand = bind_part(written, next, at, rest);
    operand = is_text ? as_text(std::move(operand), use) : as_truth(std::move(operand), use);
    made.size += operand.size;
    operands.push_back(std::move(operand.value));
    rest.is_conditional = rest.is_conditional || !is_text;
  }
  made.value = is_text                                             ? ovhost::concat(std::move(operands))
               : written.op == syntax::chain_operator::conjunction ? all_of(std::move(operands))
                                                                   : any_of(std::move(operands));
  return made;
}

// Binds an operand, or those together that are a group's key: brackets around a part of a chain are dissolved.
bound binder::bind_part(const syntax::chain& of, std::size_t& next, syntax::place at, const expression_site& site) {
  const std::vector<group_key> none;
  for (const group_key& each : site.scope->groups != nullptr ? site.scope->groups->keys : none) {
    const auto* const key = std::get_if<syntax::chain>(&each.written->is);
    if (key == nullptr || key->op != of.op || next + key->operands.size() > of.operands.size()) continue;
    const syntax::expression part{syntax::chain{of.op, of.operands.subspan(next, key->operands.size())}, at};
    std::optional<bound> made = as_group_key(part, site);
    if (!made) continue;
    next += key->operands.size();
    return *std::move(made);
  }
  return bind(*of.operands[next++], site);
}

bound binder::bind_case(const syntax::conditional& written, syntax::place at, const expression_site& site) {
  std::optional<bound> operand;
  if (written.operand != nullptr) operand = share(bind(*written.operand, site), site);
  std::vector<std::pair<expression, bound>> branches;
  branches.reserve(written.branches.size());
  expression_site inside = site;
  bound made{expression(), value_kind::null, at};
  for (const syntax::case_branch& each : written.branches) {
    bound condition = bind(*each.condition, inside);
    condition = operand ? compare(syntax::binary_operator::equal, *operand, std::move(condition), each.condition->at)
                        : as_truth(std::move(condition), "WHEN");
    inside.is_conditional = true;
    bound result = bind(*each.result, inside);
    made.kind = common_kind(made.kind, result.kind, result.at);
    made.size += condition.size + result.size + 1;
    if (result.target != nullptr) made.target = result.target;
    branches.emplace_back(std::move(condition.value), std::move(result));
  }
  std::optional<bound> otherwise;
  if (written.otherwise != nullptr) {
    otherwise = bind(*written.otherwise, inside);
    made.kind = common_kind(made.kind, otherwise->kind, otherwise->at);
    made.size += otherwise->size;
  }
  const value_kind kind = stored_kind(made.kind);
  made.value = otherwise ? std::move(otherwise->value) : ovhost::null();
  for (auto each = branches.rbegin(); each != branches.rend(); ++each) {
    made.value = ovhost::when_as(kind, std::move(each->first), std::move(each->second.value), std::move(made.value));
  }
  return made;
}

bound binder::bind_cast(const syntax::cast& written, syntax::place at, const expression_site& site) {
  const auto kind = kind_named(written.to.words);
  if (!kind) {
    throw error(error_kind::name, "there is no type \"" + std::string(written.to.words) + "\"", written.to.at.begin);
  }
  bound operand = bind(*written.operand, site);
  const bool is_text_literal = std::holds_alternative<syntax::text_literal>(written.operand->is);
  if (is_text_literal && family_of(*kind) == family::number) {
    const std::string_view digits = std::get<syntax::text_literal>(written.operand->is).utf8;
    return cast_text(digits, *kind, at);
  }
  const bool goes = operand.kind == *kind || operand.kind == value_kind::null ||
                    (family_of(operand.kind) == family::number && family_of(*kind) == family::number &&
                     !(is_floating(operand.kind) && *kind == value_kind::decimal) &&
                     !(operand.kind == value_kind::float64 && *kind == value_kind::float32));
  if (!goes) {
    throw error(error_kind::type,
                "nothing converts " + std::string(sql_name(operand.kind)) + " to " + std::string(sql_name(*kind)),
                at.begin);
  }
  const std::uint32_t size = operand.size + 1;
  return {promoted(std::move(operand), *kind), *kind, at, nullptr, {}, size};
}

// [+-] digits [. digits] [e [+-] digits], with a digit before or behind the point.
static bool is_number(std::string_view text) {
  const auto skip = [&text](std::string_view any) {
    const std::size_t end = std::min(text.find_first_not_of(any), text.size());
    text.remove_prefix(end);
    return end;
  };
  const auto skip_one = [&text](std::string_view any) {
    if (!text.empty() && any.find(text.front()) != std::string_view::npos) text.remove_prefix(1);
  };
  constexpr std::string_view digits = "0123456789";
  skip_one("+-");
  std::size_t count = skip(digits);
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    count += skip(digits);
  }
  if (count == 0) return false;
  if (text.empty() || (text.front() != 'e' && text.front() != 'E')) return text.empty();
  text.remove_prefix(1);
  skip_one("+-");
  return skip(digits) != 0 && text.empty();
}

bound binder::cast_text(std::string_view digits, value_kind kind, syntax::place at) {
  if (kind == value_kind::boolean && (same_name(digits, "true") || same_name(digits, "false"))) {
    return {lit(same_name(digits, "true")), kind, at};
  }
  if (!is_number(digits)) {
    throw error(error_kind::value, "the text \"" + std::string(digits) + "\" is no " + std::string(sql_name(kind)),
                at.begin);
  }
  bound made = number(names_.keep(std::string(digits.front() == '+' ? digits.substr(1) : digits)), at);
  if (made.kind != kind) made.value = promoted(made, kind);
  made.kind = kind;
  made.digits = {};
  return made;
}

// Rewrites a pattern with an escape of its own to one with backslashes.
static std::string with_backslashes(std::string_view pattern, std::string_view escape, syntax::place at) {
  std::string made;
  for (std::size_t next = 0; next < pattern.size(); ++next) {
    const bool escapes = !escape.empty() && pattern.substr(next, escape.size()) == escape;
    if (!escapes) {
      if (pattern[next] == '\\') made += '\\';
      made += pattern[next];
      continue;
    }
    next += escape.size();
    if (next >= pattern.size()) throw error(error_kind::value, "the pattern ends with its escape", at.begin);
    if (pattern[next] == '%' || pattern[next] == '_' || pattern[next] == '\\') made += '\\';
    made += pattern[next];
  }
  return made;
}

bound binder::bind_like(const syntax::like& written, syntax::place at, const expression_site& site) {
  bound text = as_text(bind(*written.operand, site), "LIKE");
  bound pattern = as_text(bind(*written.pattern, site), "LIKE");
  if (written.escape != nullptr) {
    const auto* const by = std::get_if<syntax::text_literal>(&written.escape->is);
    const auto* const of = std::get_if<syntax::text_literal>(&written.pattern->is);
    if (by == nullptr || of == nullptr) {
      throw error(error_kind::unsupported, "ESCAPE takes texts that are written out", written.escape->at.begin);
    }
    pattern.value = ovhost::text(with_backslashes(of->utf8, by->utf8, written.pattern->at));
  }
  bound made{expression(), value_kind::boolean, at};
  made.size = text.size + pattern.size + 1;
  made.value = ovhost::like(std::move(text.value), std::move(pattern.value));
  return written.negated ? negate(std::move(made)) : made;
}

bound binder::bind_in_list(const syntax::in_list& written, syntax::place at, const expression_site& site) {
  bound operand = share(bind(*written.operand, site), site);
  bound made{lit(false), value_kind::boolean, at};
  std::vector<expression> tests;
  tests.reserve(written.members.size());
  expression_site rest = site;
  rest.is_conditional = true;
  for (const syntax::expression* each : written.members) {
    bound test = compare(syntax::binary_operator::equal, operand, bind(*each, rest), each->at);
    made.size += test.size;
    tests.push_back(std::move(test.value));
  }
  if (!tests.empty()) made.value = any_of(std::move(tests));
  return written.negated ? negate(std::move(made)) : made;
}

bound binder::bind_is_of(const syntax::is_of& written, syntax::place at, const expression_site& site) {
  bound operand = share(bind(*written.operand, site), site);
  if (operand.kind != value_kind::reference && operand.kind != value_kind::null) {
    throw error(error_kind::type, "IS OF takes an object, and this is " + std::string(sql_name(operand.kind)),
                operand.at.begin);
  }
  std::vector<expression> tests;
  bound made{expression(), value_kind::boolean, at};
  for (const syntax::name& each : written.types) {
    const table* const type = catalog_.find_table(each.text);
    if (type == nullptr) {
      throw error(error_kind::name, "there is no table \"" + std::string(each.text) + "\"", each.at.begin);
    }
    tests.push_back(ovhost::is_a(operand.value, type->name()));
    made.size += operand.size + 3;
  }
  made.value = any_of(std::move(tests));
  return written.negated ? negate(std::move(made)) : made;
}

bool binder::can_raise(const expression& of) const {
  std::vector<const expression*> pending = {&of};
  while (!pending.empty()) {
    const expression& next = *pending.back();
    pending.pop_back();
    if (std::visit(judge(), static_cast<const expression_variant&>(next))) return true;
    if (const operation* const inner = find_operation(next)) {
      for (const expression& each : inner->operands) pending.push_back(&each);
    }
  }
  return false;
}

bound binder::share(bound of, const expression_site& at) {
  constexpr std::uint32_t small = 6;
  constexpr std::uint32_t large = 2000;
  if (of.size <= small) return of;
  const bool can_hoist =
      at.list != nullptr && at.scope->items + 64 < most_items && (!at.is_conditional || !can_raise(of.value));
  if (!can_hoist) {
    if (of.size <= large) return of;
    throw error(error_kind::limit, "this expression is too large to be used several times", of.at.begin);
  }
  return hoist(std::move(of), at);
}

// What is more than a column or a literal is computed before the subquery that it is handed to.
bound binder::share_always(bound of, const expression_site& at) {
  const bool hoists = of.size > 1 && at.list != nullptr && (!at.is_conditional || !can_raise(of.value));
  return hoists ? hoist(std::move(of), at) : of;
}

bound binder::hoist(bound of, const expression_site& at) {
  const std::uint32_t number = new_item(*at.scope, of.at);
  item made;
  made.kind = item_kind::computed;
  made.covers.set(number);
  made.needs = items_of(of.value, at.scope->block, names_);
  made.computed = define("shared", std::move(of.value), of.kind, {at.scope->block, number});
  of.value = read_of(*made.computed);
  of.size = 1;
  at.list->items.push_back(std::move(made));
  return of;
}

std::uint32_t binder::new_item(select_scope& scope, syntax::place at) const {
  if (scope.items >= most_items) {
    throw error(error_kind::limit, "a SELECT can have at most " + std::to_string(most_items) + " tables and subqueries",
                at.begin);
  }
  return scope.items++;
}

expression read_of(const assignment& of) {
  return std::visit([](const auto& held) { return expression(held); }, of.column);
}

// A column of unknown type is one of texts for the plan; it holds NULL, or a parameter as it comes.
assignment binder::define(std::string_view name, expression value, value_kind kind, column_owner owner) {
  const identifier id = names_.make(name, owner);
  return ovhost::with_type_of(stored_kind(kind), [&]<class T>() {
    return assignment{std::move(value), physical_queryplan::column_ref(physical_queryplan::computed<T>{id})};
  });
}

}  // namespace ovsql
