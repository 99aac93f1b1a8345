#include "ov_sql_executor/expressions/expression_translation.hpp"

#include <concepts>
#include <type_traits>
#include <utility>
#include <variant>

#include "ov_sql_executor/database/metadata.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/constants.hpp"
#include "ov_sql_executor/expressions/object_cast.hpp"
#include "ov_sql_executor/expressions/oid.hpp"
#include "ov_sql_executor/expressions/property_read.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"

namespace ov::sql_executor {

namespace {

using namespace physical_queryplan;  // the alternatives are named one by one below
using operators::context_list;
using operators::operator_base;
using operators::value_from_context;

using operator_ptr = std::unique_ptr<operator_base>;

class translator {
 public:
  translator(std::vector<value>& constants, const scope& columns) : constants_(constants), columns_(columns) {}

  operator_ptr translate(const expression& any) {
    return std::visit([this](const auto& alternative) { return translate(alternative); }, any);
  }

 private:
  operator_ptr translate(const Equality& any) { return binary<operators::equal>(any); }
  operator_ptr translate(const Inequality& any) { return binary<operators::not_equal>(any); }
  operator_ptr translate(const AtMost& any) { return binary<operators::less_than_or_equal>(any); }
  operator_ptr translate(const Less& any) { return binary<operators::less_than>(any); }
  operator_ptr translate(const Greater& any) { return binary<operators::greater_than>(any); }
  operator_ptr translate(const AtLeast& any) { return binary<operators::greater_than_or_equal>(any); }
  operator_ptr translate(const ObjectNumber& any) { return unary<operators::oid>(any); }

  // The alternatives that are still to come.
  operator_ptr translate(const operation&) {
    error_handling::raise_not_implemented(error_handling::no_detail, L"Not implemented error");
  }

  // A property that an enclosing node has produced already is not read again.
  template <class T>
  operator_ptr translate(const property_column<T>& column) {
    if (const auto position = find_in_scope(columns_, column)) return read_row_stack(*position);
    operator_ptr object = translate(column.variable);
    const OV_OBJ_REF& property = column.property.object;
    const std::uint16_t index = meta_data::property_column(property);
    const std::uint16_t tag = meta_data::reference_tag(meta_data::property_table(property));
    return std::make_unique<operators::property_read>(meta_data::property_type(property), index, tag,
                                                      std::move(object));
  }

  template <class T>
  operator_ptr translate(const computed<T>& column) {
    return find_column(column);
  }

  operator_ptr translate(const variable& column) { return find_column(column); }

  operator_ptr translate(const literal& any) {
    return std::visit([this](const auto& alternative) { return translate_literal(alternative); }, any);
  }

  template <class T>
  operator_ptr translate_literal(const T& literal_value) {
    const std::int16_t position = add_constant(constants_, value(std::in_place_type<T>, literal_value));
    return std::make_unique<value_from_context>(context_list::constants, position);
  }

  operator_ptr translate_literal(const OV_OBJ_REF& reference) {
    return std::make_unique<operators::object_cast>(reference);
  }

  template <class T>
  operator_ptr translate_literal(const parameter<T>& literal_parameter) {
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

  operator_ptr find_column(const column_ref& column) {
    const auto position = find_in_scope(columns_, column);
    if (!position) {
      error_handling::raise_error(error_handling::internal_error, error_handling::no_detail,
                                  L"Internal error: column is not in scope");
    }
    return read_row_stack(*position);
  }

  static operator_ptr read_row_stack(std::int16_t position) {
    return std::make_unique<value_from_context>(context_list::row_stack, position);
  }

  std::vector<value>& constants_;
  const scope& columns_;
};

}  // namespace

operator_ptr translate_expression(const expression& any, std::vector<value>& constants, const scope& columns) {
  return translator(constants, columns).translate(any);
}

std::vector<operator_ptr> translate_expressions(const std::vector<expression>& expressions,
                                                std::vector<value>& constants, const scope& columns) {
  std::vector<operator_ptr> translated;
  translated.reserve(expressions.size());
  for (const expression& any : expressions) translated.push_back(translate_expression(any, constants, columns));
  return translated;
}

}  // namespace ov::sql_executor
