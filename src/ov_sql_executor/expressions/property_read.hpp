#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_PROPERTY_READ_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_PROPERTY_READ_HPP_

#include <cassert>
#include <cstdint>
#include <vector>

#include "ov_sql_executor/database/column_read.hpp"
#include "ov_sql_executor/database/status.hpp"
#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/values/type_code.hpp"
#include "ovcoredb/ovcoredb.h"

namespace ov::sql_executor::operators {

// Reads a property of an object at a position of the row stack: the commonest operand. Gives NULL for a NULL reference,
// without a core call, and for a column that holds no value.
class property_read final : public lending_operator {
 public:
  // reference_tag, of the table that declares the column, replaces the low 16 bits of the reference's second word.
  property_read(type_code type, std::uint32_t column, std::uint16_t reference_tag, std::int16_t position)
      : type_(type), column_(column), reference_tag_(reference_tag), position_(position) {}

  // Throws std::bad_variant_access when the position holds no reference, db_exception when the core fails.
  value_view read(const execution_context& context, value& scratch) const {
    if (is_int64()) {
      std::int64_t number = 0;
      return read_int64(context, number) ? value_view(number) : operator_library::NullValue{};
    }
    const OV_OBJ_REF* object = object_in(context);
    if (object == nullptr) return operator_library::NullValue{};
    return db_util::read_column(type_, context.context_handle, tagged(*object), column_, scratch);
  }

  // read_int64 reads the value of an int64, or returns false for NULL. Requires: is_int64().
  bool is_int64() const { return type_ == type_code::int64; }
  bool read_int64(const execution_context& context, std::int64_t& number) const {
    assert(is_int64());
    const OV_OBJ_REF* object = object_in(context);
    if (object == nullptr) return false;
    const OV_OBJ_REF read = tagged(*object);
    return db_util::check_has_value(
        orv_context_get_long(context.context_handle, read.object_number, read.second_word, column_, &number));
  }

  // Appends the value to a list, where it is built.
  void append_to(std::vector<value>& list, const execution_context& context) const {
    if (is_int64()) {
      if (std::int64_t number = 0; read_int64(context, number)) {
        list.emplace_back(number);
      } else {
        list.emplace_back(operator_library::NullValue{});
      }
    } else if (const OV_OBJ_REF* object = object_in(context); object != nullptr) {
      db_util::append_column(type_, context.context_handle, tagged(*object), column_, list);
    } else {
      list.emplace_back(operator_library::NullValue{});
    }
  }

  std::size_t position() const { return static_cast<std::size_t>(position_); }

  value_view lend(execution_context& context, value& scratch) const override { return read(context, scratch); }

 private:
  // Null for NULL.
  const OV_OBJ_REF* object_in(const execution_context& context) const {
    const value& object = error_handling::element_at(context.row_stack, position());
    if (const auto* reference = std::get_if<OV_OBJ_REF>(&object)) return reference;
    if (std::holds_alternative<operator_library::NullValue>(object)) return nullptr;
    throw std::bad_variant_access();
  }

  OV_OBJ_REF tagged(const OV_OBJ_REF& object) const {
    constexpr std::uint64_t tag_bits = 0xFFFF;
    return {object.object_number, (object.second_word & ~tag_bits) | reference_tag_};
  }

  type_code type_;
  std::uint32_t column_;
  std::uint16_t reference_tag_;
  std::int16_t position_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_PROPERTY_READ_HPP_
