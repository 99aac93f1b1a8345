#include "ovsql/binding/bound.hpp"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <optional>
#include <string>

#include "ovhost/plans/expressions.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

[[noreturn]] void refuse(const std::string& message, syntax::place at) {
  throw error(error_kind::type, message, at.begin);
}

std::string quoted_kind(value_kind kind) { return std::string(sql_name(kind)); }

template <class T>
std::optional<T> whole_number(std::string_view digits) {
  T read{};
  const auto [end, status] = std::from_chars(digits.data(), digits.data() + digits.size(), read);
  if (status != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return read;
}

// Requires digits of a number. One too small for a double is 0, one too large an error.
double floating(std::string_view digits, syntax::place at) {
  double read = 0;
  const auto [end, status] = std::from_chars(digits.data(), digits.data() + digits.size(), read);
  if (status != std::errc::result_out_of_range) return read;
  read = std::strtod(std::string(digits).c_str(), nullptr);
  if (std::isinf(read)) throw error(error_kind::value, "the number is out of range", at.begin);
  return read;
}

// Trailing zeros of a fraction say nothing.
std::string_view without_zeros(std::string_view digits) {
  if (digits.find('.') == std::string_view::npos) return digits;
  while (digits.back() == '0') digits.remove_suffix(1);
  if (digits.back() == '.') digits.remove_suffix(1);
  return digits;
}

std::optional<expression> decimal_of(std::string_view digits) {
  try {
    std::string written(without_zeros(digits));
    const std::size_t point = written.find('.');
    if (point == 0 || (point == 1 && written[0] == '-')) written.insert(point, "0");
    return ovhost::decimal(written);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
}

void take_type_of(bound& literal, const bound& other) {
  if (literal.digits.empty() || !is_floating(other.kind) || literal.kind != value_kind::decimal) return;
  literal.value = ovhost::lit(floating(literal.digits, literal.at));
  literal.kind = value_kind::float64;
}

// A balanced tree of one operation, so that no chain is deep.
template <class Join>
expression balanced(std::vector<expression>& operands, std::size_t begin, std::size_t end, const Join& join) {
  if (end - begin == 1) return std::move(operands[begin]);
  const std::size_t middle = begin + (end - begin) / 2;
  expression left = balanced(operands, begin, middle, join);
  return join(std::move(left), balanced(operands, middle, end, join));
}

}  // namespace

bound number(std::string_view digits, syntax::place at) {
  bound made{expression(), value_kind::float64, at, nullptr, digits};
  if (digits.find_first_of(".eE") == std::string_view::npos) {
    if (const auto small = whole_number<std::int64_t>(digits)) {
      made.value = ovhost::lit(*small);
      made.kind = value_kind::int64;
      return made;
    }
    if (const auto large = whole_number<std::uint64_t>(digits)) {
      made.value = ovhost::lit(*large);
      made.kind = value_kind::uint64;
      return made;
    }
  } else if (digits.find_first_of("eE") == std::string_view::npos) {
    if (auto exact = decimal_of(digits)) {
      made.value = *std::move(exact);
      made.kind = value_kind::decimal;
      return made;
    }
  }
  made.value = ovhost::lit(floating(digits, at));
  return made;
}

bound as_number(bound of, std::string_view use) {
  if (of.kind == value_kind::boolean) {
    of.value = ovhost::to(value_kind::int64, std::move(of.value));
    of.kind = value_kind::int64;
    ++of.size;
  }
  const family found = family_of(of.kind);
  if (found != family::number && found != family::unknown) {
    refuse(std::string(use) + " takes numbers, and this is " + quoted_kind(of.kind) +
               (found == family::text ? "; texts and numbers do not convert into each other" : ""),
           of.at);
  }
  return of;
}

bound as_truth(bound of, std::string_view use) {
  if (of.kind == value_kind::boolean || of.kind == value_kind::null) return of;
  if (family_of(of.kind) != family::number) {
    refuse(std::string(use) + " takes a condition, and this is " + quoted_kind(of.kind), of.at);
  }
  of.value = ovhost::ne(std::move(of.value), ovhost::lit(0));
  of.kind = value_kind::boolean;
  of.size += 2;
  return of;
}

bound as_text(bound of, std::string_view use) {
  if (of.kind != value_kind::text && of.kind != value_kind::null) {
    refuse(std::string(use) + " takes texts, and this is " + quoted_kind(of.kind), of.at);
  }
  return of;
}

void match(bound& left, bound& right, syntax::place at) {
  const family a = family_of(left.kind);
  const family b = family_of(right.kind);
  if (a != b && a != family::unknown && b != family::unknown) {
    const bool texts = a == family::text || b == family::text;
    refuse(quoted_kind(left.kind) + " and " + quoted_kind(right.kind) + " are not compared" +
               (texts ? "; texts and other values do not convert into each other" : ""),
           at);
  }
  take_type_of(left, right);
  take_type_of(right, left);
}

value_kind common_kind(value_kind left, value_kind right, syntax::place at) {
  if (left == value_kind::null) return right;
  if (right == value_kind::null) return left;
  if (family_of(left) != family_of(right)) {
    refuse("the alternatives are of different types, " + quoted_kind(left) + " and " + quoted_kind(right), at);
  }
  return ovhost::common_kind(left, right);
}

value_kind common_kind(const bound& left, const bound& right, syntax::place at) {
  return common_kind(left.kind, right.kind, at);
}

expression promoted(bound of, value_kind kind) {
  if (of.kind == kind || kind == value_kind::null) return std::move(of.value);
  if (of.kind == value_kind::null) return ovhost::when_as(kind, ovhost::lit(true), std::move(of.value), ovhost::null());
  if (!of.digits.empty() && kind == value_kind::float64) return ovhost::lit(floating(of.digits, of.at));
  return ovhost::to(kind, std::move(of.value));
}

bound compare(syntax::binary_operator op, bound left, bound right, syntax::place at) {
  using enum syntax::binary_operator;
  match(left, right, at);
  bound made{expression(), value_kind::boolean, {left.at.begin, right.at.end}};
  made.size = left.size + right.size + 1;
  switch (op) {
    case equal:
      made.value = ovhost::eq(std::move(left.value), std::move(right.value));
      break;
    case not_equal:
      made.value = ovhost::ne(std::move(left.value), std::move(right.value));
      break;
    case less:
      made.value = ovhost::lt(std::move(left.value), std::move(right.value));
      break;
    case at_most:
      made.value = ovhost::le(std::move(left.value), std::move(right.value));
      break;
    case greater:
      made.value = ovhost::gt(std::move(left.value), std::move(right.value));
      break;
    default:
      made.value = ovhost::ge(std::move(left.value), std::move(right.value));
      break;
  }
  return made;
}

bound negate(bound of) {
  of.value = ovhost::negated(std::move(of.value));
  of.kind = value_kind::boolean;
  of.digits = {};
  ++of.size;
  return of;
}

expression typed_null(value_kind kind) {
  if (kind == value_kind::null) return ovhost::null();
  return ovhost::when_as(kind, ovhost::lit(false), ovhost::null(), ovhost::null());
}

expression all_of(std::vector<expression> operands) {
  return balanced(operands, 0, operands.size(),
                  [](expression left, expression right) { return ovhost::both(std::move(left), std::move(right)); });
}

expression any_of(std::vector<expression> operands) {
  return balanced(operands, 0, operands.size(),
                  [](expression left, expression right) { return ovhost::either(std::move(left), std::move(right)); });
}

}  // namespace ovsql
