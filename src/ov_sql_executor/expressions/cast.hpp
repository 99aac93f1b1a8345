#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_CAST_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_CAST_HPP_

#include <cstdint>
#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/values/type_code.hpp"

namespace ov::sql_executor::operators {

// Converts the operand's value to the type with the code TypeCode. expressions/conversion.hpp says what converts. There
// are casts to all types but Binary and references.
template <std::int32_t TypeCode>
class cast final : public lending_operator {
 public:
  explicit cast(std::unique_ptr<operator_base> source) : operand_(std::move(source)) {}

  value_view lend(execution_context& context, value& scratch) const override;

 private:
  operand operand_;
};

template <type_code Type>
using cast_to = cast<static_cast<std::int32_t>(Type)>;

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_CAST_HPP_
