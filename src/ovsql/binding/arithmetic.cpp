#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

using enum syntax::binary_operator;
using ovhost::lit;

bool is_arithmetic(syntax::binary_operator op) { return op <= modulo; }

const syntax::binary* arithmetic_of(const syntax::expression& written) {
  const auto* const found = std::get_if<syntax::binary>(&written.is);
  return found != nullptr && is_arithmetic(found->op) ? found : nullptr;
}

std::string_view sign_of(syntax::binary_operator op) {
  switch (op) {
    case add:
      return "+";
    case subtract:
      return "-";
    case multiply:
      return "*";
    case divide:
      return "/";
    default:
      return "%";
  }
}

bool is_zero(const bound& of) {
  return !of.digits.empty() && of.digits.find_first_of("123456789") == std::string_view::npos;
}

}  // namespace

// Walks down the left side in a loop: a + b + c + ... may have very many terms.
bound binder::bind_arithmetic(const syntax::expression& written, const expression_site& at) {
  std::vector<const syntax::binary*> spine;
  const syntax::expression* first = &written;
  while (const syntax::binary* const next = arithmetic_of(*first)) {
    const bool is_group_key = first != &written && at.scope->groups != nullptr && as_group_key(*first, at).has_value();
    if (is_group_key) break;
    spine.push_back(next);
    first = next->left;
  }
  bound result = bind(*first, at);
  for (auto next = spine.rbegin(); next != spine.rend(); ++next) {
    result = calculate((*next)->op, std::move(result), bind(*(*next)->right, at), (*next)->sign, at);
  }
  return result;
}

bound binder::calculate(syntax::binary_operator op, bound left, bound right, syntax::place sign,
                        const expression_site& at) {
  left = as_number(std::move(left), sign_of(op));
  right = as_number(std::move(right), sign_of(op));
  match(left, right, sign);
  if (op == syntax::binary_operator::divide || op == modulo)
    return binder::divide(std::move(left), std::move(right), op == modulo, sign, at);
  bound made{expression(), ovhost::common_kind(left.kind, right.kind), {left.at.begin, right.at.end}};
  if (made.kind == value_kind::uint64) made.kind = value_kind::int64;
  made.size = left.size + right.size + 1;
  if (op == add) {
    made.value = ovhost::add(std::move(left.value), std::move(right.value));
  } else if (op == subtract) {
    made.value = ovhost::sub(std::move(left.value), std::move(right.value));
  } else {
    made.value = ovhost::mul(std::move(left.value), std::move(right.value));
  }
  return made;
}

// Division by zero is an error, of floating numbers too, which would be infinite, or NULL where the database says so.
bound binder::divide(bound left, bound right, bool remainder, syntax::place sign, const expression_site& at) {
  bound made{expression(), ovhost::common_kind(left.kind, right.kind), {left.at.begin, right.at.end}};
  if (made.kind == value_kind::uint64) made.kind = value_kind::int64;
  if (remainder && !is_integer(made.kind) && made.kind != value_kind::null) {
    throw error(error_kind::type, "% takes integers, and this is " + std::string(sql_name(made.kind)), sign.begin);
  }
  names_.divisions.push_back(views_ == 0 ? sign : view_at_);
  const bool never_zero = !right.digits.empty() && !is_zero(right);
  const bool checks = !never_zero && (null_on_division_by_zero_ || is_floating(made.kind));
  if (checks || remainder) right = share(std::move(right), at);
  if (remainder) left = share(std::move(left), at);
  made.size = left.size + right.size + 1;
  expression quotient = ovhost::div(left.value, right.value);
  if (remainder) {
    quotient = ovhost::sub(left.value, ovhost::mul(std::move(quotient), right.value));
    made.size = 2 * (left.size + right.size) + 3;
  }
  made.value = std::move(quotient);
  if (!checks) return made;
  const value_kind kind = made.kind == value_kind::null ? value_kind::float64 : made.kind;
  expression on_zero = null_on_division_by_zero_ ? ovhost::null() : ovhost::div(lit(1), lit(0));
  made.value = ovhost::when_as(kind, ovhost::eq(right.value, lit(0)), std::move(on_zero), std::move(made.value));
  made.size += right.size + 5;
  return made;
}

}  // namespace ovsql
