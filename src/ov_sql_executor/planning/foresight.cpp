#include "ov_sql_executor/planning/foresight.hpp"

#include <concepts>
#include <optional>
#include <variant>

#include "ov_sql_executor/database/metadata.hpp"
#include "ov_sql_executor/expressions/operand_chain.hpp"
#include "ov_sql_executor/values/value_family.hpp"

namespace physical_to_exec {

namespace {

using namespace physical_queryplan;  // the alternatives are named one by one below
using ov::sql_executor::type_code;
using ov::sql_executor::value;
using ov::sql_executor::value_family;

// What evaluating something gives if it cannot raise: values of one family and NULL, or of any family.
struct forecast {
  std::optional<value_family> family;
};

value_family family_of(type_code type) {
  switch (type) {
    case type_code::tt_string:
      return value_family::text;
    case type_code::binary:
      return value_family::binary;
    case type_code::obj_ref:
      return value_family::reference;
    case type_code::set_specifier:
      return value_family::set_specifier;
    default:
      return value_family::number;
  }
}

bool compare(const std::optional<forecast>& left, const std::optional<forecast>& right) {
  if (!left || !right || !left->family || !right->family) return false;
  return left->family == right->family || left->family == value_family::null || right->family == value_family::null;
}

template <class Alternative>
constexpr bool is_comparison =
    std::same_as<Alternative, Equality> || std::same_as<Alternative, Inequality> || std::same_as<Alternative, AtMost> ||
    std::same_as<Alternative, Less> || std::same_as<Alternative, Greater> || std::same_as<Alternative, AtLeast>;

template <class Alternative>
constexpr bool is_chain = std::same_as<Alternative, And> || std::same_as<Alternative, Or>;

}  // namespace

// Nothing where the value may not come about.
class foresight::outlook {
 public:
  explicit outlook(const foresight& of) : of_(of) {}

  std::optional<forecast> of(const expression& any) const { return std::visit(*this, any); }

  std::optional<forecast> operator()(const operation& /*any*/) const { return std::nullopt; }

  template <class T>
  std::optional<forecast> operator()(const property_column<T>& column) const {
    if (of_.columns_.find_in_scope(column)) return forecast{};
    if (!is_found(column.variable)) return std::nullopt;
    return forecast{family_of(meta_data::property_type(column.property.object))};
  }

  template <class T>
  std::optional<forecast> operator()(const computed<T>& /*column*/) const {
    return forecast{};
  }

  std::optional<forecast> operator()(const variable& /*column*/) const { return forecast{}; }

  std::optional<forecast> operator()(const literal& any) const {
    return std::visit(
        []<class T>(const T& held) -> std::optional<forecast> {
          if constexpr (std::same_as<T, OV_OBJ_REF> || !std::constructible_from<value, std::in_place_type_t<T>, T>) {
            return std::nullopt;
          } else {
            return forecast{ov::sql_executor::family_of(ov::sql_executor::view_of(value(std::in_place_type<T>, held)))};
          }
        },
        any);
  }

 private:
  bool is_found(const variable& object) const { return std::ranges::count(of_.computed_, object) == 0; }

  const foresight& of_;
};

bool foresight::knows_value(const expression& any) const { return outlook(*this).of(any).has_value(); }

bool foresight::knows_test(const expression& condition) const {
  return std::visit(
      [this]<class Alternative>(const Alternative& any) {
        if constexpr (is_comparison<Alternative>) {
          return compare(outlook(*this).of(any.operands[0]), outlook(*this).of(any.operands[1]));
        } else if constexpr (std::same_as<Alternative, NullTest> || std::same_as<Alternative, NotNullTest>) {
          return knows_value(any.operands[0]);
        } else if constexpr (std::same_as<Alternative, Not>) {
          return knows_test(any.operands[0]);
        } else if constexpr (std::same_as<Alternative, ExclusiveOr>) {
          return knows_test(any.operands[0]) && knows_test(any.operands[1]);
        } else if constexpr (is_chain<Alternative>) {
          bool all = true;
          ov::sql_executor::visit_chain(any, [&](const expression& each) { all = all && knows_test(each); });
          return all;
        } else {
          return false;
        }
      },
      condition);
}

}  // namespace physical_to_exec
