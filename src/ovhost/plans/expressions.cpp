#include "ovhost/plans/expressions.hpp"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>

#include "ovhost/values/decimal_text.hpp"
#include "ovhost/values/text.hpp"

namespace ovhost {
namespace {

using namespace physical_queryplan;

result_type_tag tag_of(value_kind kind) {
  return with_type_of(kind, []<class T>() { return result_type_tag(meta_support::TypeIdentity<T>()); });
}

// A list of what is moved into it; an initializer list would copy.
template <class... Expressions>
std::vector<expression> list(Expressions&&... all) {
  std::vector<expression> made;
  made.reserve(sizeof...(all));
  (made.push_back(std::forward<Expressions>(all)), ...);
  return made;
}

template <class Operation>
expression make(value_kind result, std::vector<expression> operands) {
  return Operation{{tag_of(result), std::move(operands)}};
}

template <class Operation>
expression make_test(expression left, expression right) {
  return make<Operation>(value_kind::boolean, list(std::move(left), std::move(right)));
}

template <class Operation>
expression make_arithmetic(expression left, expression right) {
  const value_kind common = common_kind(kind_of(left), kind_of(right));
  const value_kind result = common == value_kind::uint64 ? value_kind::int64 : common;
  return make<Operation>(result, list(std::move(left), std::move(right)));
}

// From the type that arithmetic gives up first to the one that it prefers.
constexpr std::array promotion_order = {value_kind::boolean, value_kind::uint64,  value_kind::int64,
                                        value_kind::decimal, value_kind::float32, value_kind::float64};

template <class T>
value_kind kind_of_literal(const T&) {
  return kind_of_type<T>();
}
template <class T>
value_kind kind_of_literal(const physical_queryplan::parameter<T>&) {
  return kind_of_type<T>();
}

struct kind_reader {
  value_kind operator()(const operation& of) const {
    return std::visit([]<class T>(meta_support::TypeIdentity<T>) { return kind_of_type<T>(); }, of.result_type);
  }
  template <class T>
  value_kind operator()(const property_column<T>&) const {
    return kind_of_type<T>();
  }
  template <class T>
  value_kind operator()(const computed<T>&) const {
    return kind_of_type<T>();
  }
  value_kind operator()(const variable&) const { return value_kind::reference; }
  value_kind operator()(const literal& of) const {
    return std::visit([](const auto& held) { return kind_of_literal(held); }, of);
  }
};

}  // namespace

value_kind kind_of(const expression& of) {
  return std::visit(kind_reader(), static_cast<const expression_variant&>(of));
}

value_kind common_kind(value_kind left, value_kind right) {
  if (left == value_kind::null) return right;
  const auto* const first = std::find(promotion_order.begin(), promotion_order.end(), left);
  const auto* const second = std::find(promotion_order.begin(), promotion_order.end(), right);
  if (first == promotion_order.end() || second == promotion_order.end()) return left;
  return *std::max(first, second);
}

expression constant(ov::sql_executor::value of) {
  return std::visit([]<class T>(T&& held) { return expression(literal(std::forward<T>(held))); }, std::move(of));
}

expression text(std::u16string_view units) { return literal(encode(units)); }
expression text(std::string_view utf8) { return text(utf16(utf8)); }
expression null() { return literal(NullValue()); }

expression decimal(std::string_view digits) {
  const auto number = parse_decimal(digits);
  if (!number) throw std::invalid_argument("\"" + std::string(digits) + "\" is no decimal");
  return literal(*number);
}

expression parameter(std::uint64_t number, value_kind kind) {
  return with_type_of(kind,
                      [number]<class T>() { return expression(literal(physical_queryplan::parameter<T>{number})); });
}

expression eq(expression left, expression right) { return make_test<Equality>(std::move(left), std::move(right)); }
expression ne(expression left, expression right) { return make_test<Inequality>(std::move(left), std::move(right)); }
expression le(expression left, expression right) { return make_test<AtMost>(std::move(left), std::move(right)); }
expression lt(expression left, expression right) { return make_test<Less>(std::move(left), std::move(right)); }
expression gt(expression left, expression right) { return make_test<Greater>(std::move(left), std::move(right)); }
expression ge(expression left, expression right) { return make_test<AtLeast>(std::move(left), std::move(right)); }

expression both(expression left, expression right) { return make_test<And>(std::move(left), std::move(right)); }
expression either(expression left, expression right) { return make_test<Or>(std::move(left), std::move(right)); }
expression exclusive(expression left, expression right) {
  return make_test<ExclusiveOr>(std::move(left), std::move(right));
}
expression negated(expression operand) { return make<Not>(value_kind::boolean, list(std::move(operand))); }
expression is_null(expression operand) { return make<NullTest>(value_kind::boolean, list(std::move(operand))); }
expression is_not_null(expression operand) { return make<NotNullTest>(value_kind::boolean, list(std::move(operand))); }

expression is_a(expression object, expression set_specifier) {
  return make_test<TypeTest>(std::move(object), std::move(set_specifier));
}
expression is_a(expression object, std::string_view type) {
  return is_a(std::move(object), to(value_kind::set_specifier, text(type)));
}

expression add(expression left, expression right) { return make_arithmetic<Sum>(std::move(left), std::move(right)); }
expression sub(expression left, expression right) {
  return make_arithmetic<Difference>(std::move(left), std::move(right));
}
expression mul(expression left, expression right) {
  return make_arithmetic<Product>(std::move(left), std::move(right));
}
expression div(expression left, expression right) {
  return make_arithmetic<Quotient>(std::move(left), std::move(right));
}
expression neg(expression operand) {
  const value_kind kind = kind_of(operand);
  return make<Negation>(kind == value_kind::uint64 ? value_kind::int64 : kind, list(std::move(operand)));
}

expression like(expression text, expression pattern) {
  return make_test<PatternMatch>(std::move(text), std::move(pattern));
}
expression starts_with(expression text, expression prefix) {
  return make_test<PrefixTest>(std::move(text), std::move(prefix));
}
expression like_prefix(expression pattern) { return make<PrefixPattern>(value_kind::text, list(std::move(pattern))); }
expression concat(std::vector<expression> texts) { return make<Concatenation>(value_kind::text, std::move(texts)); }

expression when(expression condition, expression then_value, expression else_value) {
  const value_kind kind = common_kind(kind_of(then_value), kind_of(else_value));
  return when_as(kind, std::move(condition), std::move(then_value), std::move(else_value));
}
expression when_as(value_kind kind, expression condition, expression then_value, expression else_value) {
  return make<Conditional>(kind, list(std::move(condition), std::move(then_value), std::move(else_value)));
}

expression oid(expression reference) { return make<ObjectNumber>(value_kind::uint64, list(std::move(reference))); }

expression to(value_kind kind, expression operand) {
  std::vector<expression> operands = list(std::move(operand));
  switch (kind) {
    case value_kind::boolean:
      return make<ToBool>(kind, std::move(operands));
    case value_kind::uint64:
      return make<ToUint64>(kind, std::move(operands));
    case value_kind::int64:
      return make<ToInt64>(kind, std::move(operands));
    case value_kind::decimal:
      return make<ToDecimal>(kind, std::move(operands));
    case value_kind::float32:
      return make<ToFloat>(kind, std::move(operands));
    case value_kind::float64:
      return make<ToDouble>(kind, std::move(operands));
    case value_kind::text:
      return make<ToText>(kind, std::move(operands));
    case value_kind::set_specifier:
      return make<ToSetSpecifier>(kind, std::move(operands));
    default:
      throw std::invalid_argument("nothing converts to " + std::string(name_of(kind)));
  }
}

}  // namespace ovhost
