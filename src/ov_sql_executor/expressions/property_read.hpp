#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_PROPERTY_READ_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_PROPERTY_READ_HPP_

#include <cstdint>
#include <memory>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operand.hpp"
#include "ov_sql_executor/values/type_code.hpp"

namespace ov::sql_executor::operators {

// A column of the object that the operand refers to. NULL for a NULL object, without a core call, and for a column that
// holds no value. Throws std::bad_variant_access when the operand is not a reference, db_exception when the core fails.
class property_read final : public lending_operator {
 public:
  // reference_tag, of the table that declares the column, replaces the low 16 bits of the reference's second word.
  property_read(type_code type, std::uint32_t column, std::uint16_t reference_tag,
                std::unique_ptr<operator_base> object)
      : type_(type), column_(column), reference_tag_(reference_tag), object_(std::move(object)) {}

  value_view lend(execution_context& context, value& room) const override;

 private:
  type_code type_;
  std::uint32_t column_;
  std::uint16_t reference_tag_;
  operand object_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_PROPERTY_READ_HPP_
