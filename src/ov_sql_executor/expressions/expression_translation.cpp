#include "ov_sql_executor/expressions/expression_translation.hpp"

#include <concepts>
#include <type_traits>
#include <utility>
#include <variant>

#include "ov_sql_executor/database/metadata.hpp"
#include "ov_sql_executor/errors/raise.hpp"
#include "ov_sql_executor/errors/require_value.hpp"
#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/expressions/arithmetic.hpp"
#include "ov_sql_executor/expressions/cast.hpp"
#include "ov_sql_executor/expressions/chain_operands.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/concat.hpp"
#include "ov_sql_executor/expressions/constants.hpp"
#include "ov_sql_executor/expressions/if_op.hpp"
#include "ov_sql_executor/expressions/is.hpp"
#include "ov_sql_executor/expressions/like.hpp"
#include "ov_sql_executor/expressions/logical.hpp"
#include "ov_sql_executor/expressions/null_test.hpp"
#include "ov_sql_executor/expressions/object_cast.hpp"
#include "ov_sql_executor/expressions/oid.hpp"
#include "ov_sql_executor/expressions/operand_chain.hpp"
#include "ov_sql_executor/expressions/property_read.hpp"
#include "ov_sql_executor/expressions/starts_with.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"

namespace ov::sql_executor {

namespace {

using namespace physical_queryplan;  // the alternatives are named one by one below
using error_handling::require_value;
using operators::context_list;
using operators::operator_base;
using operators::value_from_context;

using operator_ptr = std::unique_ptr<operator_base>;

class expression_translator {
 public:
  expression_translator(std::vector<value>& constants, const visible_columns& columns)
      : constants_(constants), columns_(columns) {}

  operator_ptr translate(const expression& any) {
    return std::visit([this](const auto& alternative) { return build(alternative); }, require_value(any));
  }

 private:
  operator_ptr build(const Equality& any) { return binary<operators::equal>(any); }
  operator_ptr build(const Inequality& any) { return binary<operators::not_equal>(any); }
  operator_ptr build(const AtMost& any) { return binary<operators::less_than_or_equal>(any); }
  operator_ptr build(const Less& any) { return binary<operators::less_than>(any); }
  operator_ptr build(const Greater& any) { return binary<operators::greater_than>(any); }
  operator_ptr build(const AtLeast& any) { return binary<operators::greater_than_or_equal>(any); }
  operator_ptr build(const And& any) {
    return connective<operators::logical_and, operators::all_of, Inequality, operators::not_equal>(any);
  }
  operator_ptr build(const Or& any) {
    return connective<operators::logical_or, operators::any_of, Equality, operators::equal>(any);
  }
  operator_ptr build(const Not& any) { return unary<operators::logical_not>(any); }
  operator_ptr build(const NullTest& any) { return unary<operators::is_null>(any); }
  operator_ptr build(const NotNullTest& any) { return unary<operators::is_not_null>(any); }
  operator_ptr build(const Sum& any) { return binary<operators::addition>(any); }
  operator_ptr build(const Difference& any) { return binary<operators::subtraction>(any); }
  operator_ptr build(const Negation& any) { return unary<operators::unary_negate>(any); }
  operator_ptr build(const Quotient& any) { return binary<operators::division>(any); }
  operator_ptr build(const Product& any) { return binary<operators::multiplication>(any); }
  operator_ptr build(const PatternMatch& any) { return binary<operators::like>(any); }
  operator_ptr build(const PrefixTest& any) { return binary<operators::starts_with>(any); }
  operator_ptr build(const Conditional& any) { return conditional(any); }
  operator_ptr build(const ExclusiveOr& any) { return binary<operators::xor_op>(any); }
  operator_ptr build(const Concatenation& any) { return list<operators::concat>(any); }
  operator_ptr build(const TypeTest& any) { return binary<operators::is>(any); }
  operator_ptr build(const ObjectNumber& any) { return unary<operators::oid>(any); }
  operator_ptr build(const ToBool& any) { return unary<operators::cast_to<type_code::boolean>>(any); }
  operator_ptr build(const ToUint64& any) { return unary<operators::cast_to<type_code::uint64>>(any); }
  operator_ptr build(const ToInt64& any) { return unary<operators::cast_to<type_code::int64>>(any); }
  operator_ptr build(const ToDecimal& any) { return unary<operators::cast_to<type_code::decimal>>(any); }
  operator_ptr build(const ToFloat& any) { return unary<operators::cast_to<type_code::float32>>(any); }
  operator_ptr build(const ToDouble& any) { return unary<operators::cast_to<type_code::float64>>(any); }
  operator_ptr build(const ToText& any) { return unary<operators::cast_to<type_code::tt_string>>(any); }
  operator_ptr build(const ToSetSpecifier& any) { return unary<operators::cast_to<type_code::set_specifier>>(any); }
  operator_ptr build(const PrefixPattern& any) { return unary<operators::like_starts_with>(any); }

  // Does not read a property again that an enclosing node has produced.
  template <class T>
  operator_ptr build(const property_column<T>& column) {
    if (const auto position = columns_.find_in_scope(column)) return read_row_stack(*position);
    const std::int16_t object = find_column(column.variable);
    const OV_OBJ_REF& property = column.property.object;
    const std::uint16_t index = meta_data::property_column(property);
    const std::uint16_t tag = meta_data::reference_tag(meta_data::property_table(property));
    return std::make_unique<operators::property_read>(meta_data::property_type(property), index, tag, object);
  }

  template <class T>
  operator_ptr build(const computed<T>& column) {
    return read_row_stack(find_column(column));
  }

  operator_ptr build(const variable& column) { return read_row_stack(find_column(column)); }

  operator_ptr build(const literal& any) {
    return std::visit([this](const auto& alternative) { return build_literal(alternative); }, require_value(any));
  }

  template <class T>
  operator_ptr build_literal(const T& literal_value) {
    const std::int16_t position = add_constant(constants_, value(std::in_place_type<T>, literal_value));
    return std::make_unique<value_from_context>(context_list::constants, position);
  }

  operator_ptr build_literal(const OV_OBJ_REF& reference) {
    return std::make_unique<operators::object_cast>(reference);
  }

  template <class T>
  operator_ptr build_literal(const parameter<T>& literal_parameter) {
    return std::make_unique<value_from_context>(context_list::variables, to_position(literal_parameter.number));
  }

  operator_ptr operand(const operation& any, std::size_t index) {
    return translate(error_handling::element_at(any.operands, index));
  }

  template <class Operator>
  operator_ptr unary(const operation& any) {
    return std::make_unique<Operator>(operand(any, 0));
  }

  template <class Operator>
  operator_ptr binary(const operation& any) {
    operator_ptr left = operand(any, 0);
    operator_ptr right = operand(any, 1);
    return std::make_unique<Operator>(std::move(left), std::move(right));
  }

  // Makes one list of the operands of nested ANDs or ORs.
  template <class Two, class Many, class Comparison, class Comparing, class Operation>
  operator_ptr connective(const Operation& any) {
    operators::chain_operands<Comparing> operands(constants_);
    visit_chain(any, [&](const expression& each) { add_to_chain<Comparison>(operands, each); });
    std::vector<operator_ptr> made = operands.finish();
    if (made.size() == 1) return std::move(made[0]);
    if (made.size() > 2) return std::make_unique<Many>(std::move(made));
    return std::make_unique<Two>(std::move(made[0]), std::move(made[1]));
  }

  template <class Comparison, class Operands>
  void add_to_chain(Operands& operands, const expression& each) {
    const auto* const comparison = std::get_if<Comparison>(&each);
    const auto member = comparison != nullptr ? operators::find_member(*comparison) : std::nullopt;
    if (!member) return operands.add(translate(each));
    operator_ptr left = operand(*comparison, 0);
    operator_ptr right = operand(*comparison, 1);
    operands.add_test(*comparison, *member, std::move(left), std::move(right));
  }

  // Selects the class by the result type.
  operator_ptr conditional(const Conditional& any) {
    operator_ptr condition = operand(any, 0);
    operator_ptr then_value = operand(any, 1);
    operator_ptr else_value = operand(any, 2);
    return std::visit(
        [&]<class Result>(meta_support::TypeIdentity<Result>) -> operator_ptr {
          return std::make_unique<operators::if_op<Result>>(std::move(condition), std::move(then_value),
                                                            std::move(else_value));
        },
        require_value(any.result_type));
  }

  template <class Operator>
  operator_ptr list(const operation& any) {
    return std::make_unique<Operator>(translate_expressions(any.operands, constants_, columns_));
  }

  std::int16_t find_column(const column_ref& column) {
    const auto position = columns_.find_in_scope(column);
    if (!position) {
      error_handling::raise_error(error_handling::internal_error, error_handling::no_detail,
                                  L"Internal error: column is not in scope");
    }
    return *position;
  }

  static operator_ptr read_row_stack(std::int16_t position) {
    return std::make_unique<value_from_context>(context_list::row_stack, position);
  }

  std::vector<value>& constants_;
  const visible_columns& columns_;
};

}  // namespace

operator_ptr translate_expression(const expression& any, std::vector<value>& constants,
                                  const visible_columns& columns) {
  return expression_translator(constants, columns).translate(any);
}

std::vector<operator_ptr> translate_expressions(const std::vector<expression>& expressions,
                                                std::vector<value>& constants, const visible_columns& columns) {
  std::vector<operator_ptr> translated;
  translated.reserve(expressions.size());
  for (const expression& any : expressions) translated.push_back(translate_expression(any, constants, columns));
  return translated;
}

}  // namespace ov::sql_executor
