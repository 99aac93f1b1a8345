#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_VALUE_FROM_CONTEXT_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_VALUE_FROM_CONTEXT_HPP_

#include <cstdint>

#include "ov_sql_executor/errors/require_value.hpp"
#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/expressions/lending_operator.hpp"

namespace ov::sql_executor::operators {

// The lists of the execution context.
enum class context_list : std::uint8_t { constants = 0, variables = 1, row_stack = 2 };

// Reads a value that the context already holds: a literal, a parameter, or a value of a row in scope.
class value_from_context final : public lending_operator {
 public:
  value_from_context(context_list source, std::int16_t position) : source_(source), position_(position) {}

  // Returns the value itself. Throws std::out_of_range "invalid vector<T> subscript" where the list has no such
  // position.
  const value& at(const execution_context& context) const {
    return error_handling::element_at(list(context), position());
  }

  std::size_t position() const { return static_cast<std::size_t>(position_); }
  bool reads_row_stack() const { return source_ == context_list::row_stack; }
  bool reads_constants() const { return source_ == context_list::constants; }

  value_view lend(execution_context& context, value& /*scratch*/) const override { return view_of(at(context)); }
  value evaluate(execution_context& context) const override { return error_handling::require_value(at(context)); }

 private:
  const std::vector<value>& list(const execution_context& context) const {
    switch (source_) {
      case context_list::constants:
        return context.constants;
      case context_list::variables:
        return context.variables;
      case context_list::row_stack:
        break;
    }
    return context.row_stack;
  }

  context_list source_;
  std::int16_t position_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_VALUE_FROM_CONTEXT_HPP_
