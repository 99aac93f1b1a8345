#include "ov_sql_executor/values/arithmetic.hpp"

#include <concepts>
#include <cstdint>
#include <variant>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/values/checked_arithmetic.hpp"
#include "ov_sql_executor/values/decimal_arithmetic.hpp"
#include "ov_sql_executor/values/number_conversion.hpp"
#include "ov_sql_executor/values/pair_dispatch.hpp"
#include "ov_sql_executor/values/promotion.hpp"

namespace ov::sql_executor {

namespace {

using operator_library::NullValue;

// Accepts every number with every number, and anything else with its own alternative only.
struct promotion_family {
  using result = promoted_pair;

  static result null() { return {NullValue{}, NullValue{}}; }

  template <numeric_alternative Left, numeric_alternative Right>
  static result apply(const Left& left, const Right& right) {
    using common = common_number<Left, Right>;
    return {convert_number<common>(left), convert_number<common>(right)};
  }

  template <class Same>
  requires(!numeric_alternative<Same>) static result apply(const Same& left, const Same& right) {
    return {left, right};
  }
};

// Accepts numbers whose common type is arithmetic.
template <class Operation>
struct arithmetic_family {
  using result = value_view;

  static result null() { return NullValue{}; }

  template <numeric_alternative Left, numeric_alternative Right>
  requires arithmetic_alternative<common_number<Left, Right>>
  static result apply(const Left& left, const Right& right) {
    using common = common_number<Left, Right>;
    return Operation::apply(convert_number<common>(left), convert_number<common>(right));
  }
};

// clang-format off
struct addition {
  static std::int64_t apply(std::int64_t left, std::int64_t right) { return checked_add(left, right); }
  static Decimal apply(Decimal left, Decimal right) { return add(left, right); }
  template <floating_alternative T> static T apply(T left, T right) { return left + right; }
};

struct subtraction {
  static std::int64_t apply(std::int64_t left, std::int64_t right) { return checked_subtract(left, right); }
  static Decimal apply(Decimal left, Decimal right) { return subtract(left, right); }
  template <floating_alternative T> static T apply(T left, T right) { return left - right; }
};

struct multiplication {
  static std::int64_t apply(std::int64_t left, std::int64_t right) { return checked_multiply(left, right); }
  static Decimal apply(Decimal left, Decimal right) { return multiply(left, right); }
  template <floating_alternative T> static T apply(T left, T right) { return left * right; }
};

struct division {
  static std::int64_t apply(std::int64_t left, std::int64_t right) { return checked_divide(left, right); }
  static Decimal apply(Decimal left, Decimal right) { return divide(left, right); }
  template <floating_alternative T> static T apply(T left, T right) { return left / right; }
};
// clang-format on

template <class Number>
value_view negate_alternative(const Number& number) {
  if constexpr (std::same_as<Number, std::monostate>) {
    throw std::bad_variant_access();
  } else if constexpr (std::same_as<Number, NullValue>) {
    return number;
  } else if constexpr (std::same_as<Number, std::int64_t> || std::same_as<Number, std::uint64_t>) {
    return checked_negate(number);
  } else if constexpr (std::same_as<Number, Decimal>) {
    return negate(number);
  } else if constexpr (floating_alternative<Number>) {
    return -number;
  } else {
    throw db_util::db_exception{db_util::type_error};
  }
}

}  // namespace

promoted_pair promote_pair(const value_view& left, const value_view& right) {
  return pair_table<promotion_family>::dispatch(left, right);
}

value_view add_values(const value_view& left, const value_view& right) {
  return pair_table<arithmetic_family<addition>>::dispatch(left, right);
}

value_view subtract_values(const value_view& left, const value_view& right) {
  return pair_table<arithmetic_family<subtraction>>::dispatch(left, right);
}

value_view multiply_values(const value_view& left, const value_view& right) {
  return pair_table<arithmetic_family<multiplication>>::dispatch(left, right);
}

value_view divide_values(const value_view& left, const value_view& right) {
  return pair_table<arithmetic_family<division>>::dispatch(left, right);
}

value_view negate_value(const value_view& number) {
  return visit_view([](const auto& held) { return negate_alternative(held); }, number);
}

}  // namespace ov::sql_executor
