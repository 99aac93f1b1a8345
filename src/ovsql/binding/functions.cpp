#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/binding/binder.hpp"
#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/aggregate_calls.hpp"

namespace ovsql {
namespace {

using ovhost::lit;

const std::vector<std::string_view> known_names = {"abs",      "avg",         "coalesce", "count",
                                                   "greatest", "least",       "max",      "min",
                                                   "nullif",   "starts_with", "sum",      "object_number"};

void require_arguments(const syntax::call& written, std::size_t least, std::size_t most, syntax::place at) {
  const std::size_t count = written.arguments.size();
  if (written.star || count < least || count > most) {
    const std::string wanted = least == most ? std::to_string(least) : "at least " + std::to_string(least);
    throw error(error_kind::type,
                std::string(written.function.text) + " takes " + wanted + (least == 1 ? " value" : " values"),
                at.begin);
  }
  if (written.distinct || written.filter != nullptr) {
    throw error(error_kind::type,
                std::string(written.function.text) + " is no aggregate: it takes no DISTINCT or FILTER", at.begin);
  }
}

constexpr std::size_t any_number = static_cast<std::size_t>(-1);

}  // namespace

bound binder::bind_call(const syntax::call& written, syntax::place at, const expression_site& site) {
  const std::string_view name = written.function.text;
  if (syntax::is_aggregate(name)) return bind_aggregate(written, at, site);
  if (name == "coalesce" || name == "ifnull") return bind_coalesce(written, at, site);
  if (name == "nullif") return bind_nullif(written, at, site);
  if (name == "abs") return bind_abs(written, at, site);
  if (name == "greatest" || name == "least") return bind_extreme(written, at, site, name == "greatest");
  if (name == "starts_with") {
    require_arguments(written, 2, 2, at);
    bound left = as_text(bind(*written.arguments[0], site), name);
    bound right = as_text(bind(*written.arguments[1], site), name);
    bound made{expression(), value_kind::boolean, at};
    made.size = left.size + right.size + 1;
    made.value = ovhost::starts_with(std::move(left.value), std::move(right.value));
    return made;
  }
  if (name == "object_number") {
    require_arguments(written, 1, 1, at);
    bound object = bind(*written.arguments[0], site);
    if (object.kind != value_kind::reference && object.kind != value_kind::null) {
      throw error(error_kind::type, "object_number takes an object, and this is " + std::string(sql_name(object.kind)),
                  object.at.begin);
    }
    return {ovhost::oid(std::move(object.value)), value_kind::uint64, at, nullptr, {}, object.size + 1};
  }
  throw error(error_kind::unsupported,
              "there is no function \"" + std::string(name) + "\"" + suggest(name, known_names),
              written.function.at.begin);
}

bound binder::bind_coalesce(const syntax::call& written, syntax::place at, const expression_site& site) {
  require_arguments(written, 1, any_number, at);
  std::vector<bound> operands;
  bound made{expression(), value_kind::null, at};
  expression_site inside = site;
  for (const syntax::expression* each : written.arguments) {
    const bool is_last = each == written.arguments.back();
    operands.push_back(is_last ? bind(*each, inside) : share(bind(*each, inside), inside));
    made.kind = common_kind(made.kind, operands.back().kind, each->at);
    if (operands.back().target != nullptr) made.target = operands.back().target;
    made.size += 2 * operands.back().size + 1;
    inside.is_conditional = true;
  }
  made.value = std::move(operands.back().value);
  for (std::size_t next = operands.size() - 1; next-- > 0;) {
    const expression& operand = operands[next].value;
    const value_kind kind = stored_kind(made.kind);
    made.value = ovhost::when_as(kind, ovhost::is_not_null(operand), operand, std::move(made.value));
  }
  return made;
}

bound binder::bind_nullif(const syntax::call& written, syntax::place at, const expression_site& site) {
  require_arguments(written, 2, 2, at);
  bound left = share(bind(*written.arguments[0], site), site);
  bound right = bind(*written.arguments[1], site);
  if (left.kind == value_kind::null) left.kind = right.kind;
  bound equality = compare(syntax::binary_operator::equal, left, std::move(right), at);
  bound made{expression(), left.kind, at, left.target};
  made.size = equality.size + left.size + 2;
  made.value = ovhost::when_as(stored_kind(left.kind), std::move(equality.value), ovhost::null(), left.value);
  return made;
}

bound binder::bind_abs(const syntax::call& written, syntax::place at, const expression_site& site) {
  require_arguments(written, 1, 1, at);
  bound operand = share(as_number(bind(*written.arguments[0], site), "abs"), site);
  if (operand.kind == value_kind::uint64) return operand;
  bound made{expression(), operand.kind, at};
  made.size = 3 * operand.size + 4;
  const value_kind kind = operand.kind == value_kind::null ? value_kind::float64 : operand.kind;
  made.value = ovhost::when_as(kind, ovhost::lt(operand.value, lit(0)), ovhost::neg(operand.value), operand.value);
  return made;
}

// NULLs are left out, as PostgreSQL has it: greatest(1, NULL) is 1.
bound binder::bind_extreme(const syntax::call& written, syntax::place at, const expression_site& site, bool greatest) {
  require_arguments(written, 1, any_number, at);
  bound best = bind(*written.arguments[0], site);
  for (const syntax::expression* each : written.arguments.subspan(1)) {
    best = share(std::move(best), site);
    bound next = share(bind(*each, site), site);
    const auto op = greatest ? syntax::binary_operator::at_least : syntax::binary_operator::at_most;
    bound is_better = compare(op, best, next, each->at);
    bound made{expression(), common_kind(best, next, each->at), at};
    made.size = 2 * (best.size + next.size) + is_better.size + 4;
    const value_kind kind = stored_kind(made.kind);
    made.value = ovhost::when_as(kind, std::move(is_better.value), best.value, next.value);
    made.value = ovhost::when_as(kind, ovhost::is_null(next.value), best.value, std::move(made.value));
    made.value = ovhost::when_as(kind, ovhost::is_null(best.value), next.value, std::move(made.value));
    best = std::move(made);
  }
  return best;
}

}  // namespace ovsql
