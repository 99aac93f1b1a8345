#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_HPP_

#include <boost/container/small_vector.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "ov_sql_executor/expressions/lending_operator.hpp"
#include "ov_sql_executor/expressions/operator_base.hpp"
#include "ov_sql_executor/expressions/property_read.hpp"
#include "ov_sql_executor/expressions/value_from_context.hpp"

namespace ov::sql_executor::operators {

// Room for what the core lends; texts as they are in columns need no heap.
using byte_buffer = boost::container::small_vector<std::uint8_t, 64>;

// An owned expression, and the cheapest way to its value: read where it lies in the context, lent by an operator of
// this library, or evaluated by one that is not. Which one it is, is found out once, when the tree is built.
//
//    call        gives                     good until                                  for
//    evaluate    a value                   always                                      what is kept
//    append_to   a value in a list         always                                      rows
//    lend        a view                    the next evaluation, or core call           the last operand of an operation
//    hold        a view; what would not    room and bytes change, or the row is gone   the operands before it
//                last is copied
//    preserve    a view; all that it       room and bytes change                       rows that wait
//                borrows is copied
//
// `room` is the caller's value, for results that lie nowhere else; views may point into it.
class operand {
 public:
  explicit operand(std::unique_ptr<operator_base> expression)
      : expression_(std::move(expression)),
        lender_(expression_.own()),
        context_read_(lender_as<value_from_context>()),
        property_(lender_as<property_read>()) {}

  // A value of the caller's own.
  value evaluate(execution_context& context) const { return expression_->evaluate(context); }

  // A look at the value: for the operand that is evaluated last. See lending_operator::lend.
  value_view lend(execution_context& context, value& room) const {
    if (property_ != nullptr) return property_->read(context, room);
    if (context_read_ != nullptr) return view_of(context_read_->at(context));
    if (lender_ != nullptr) return lender_->lend(context, room);
    room = expression_->evaluate(context);
    return view_of(room);
  }

  // See lending_operator::test.
  truth test(execution_context& context) const {
    if (lender_ != nullptr) return lender_->test(context);
    return to_truth(view_of(expression_->evaluate(context)));
  }

  // Whether a condition holds; NULL counts as false.
  bool holds(execution_context& context) const { return test(context) == truth::yes; }

  // A look that stays good while other operands are evaluated: see may_go for what is copied into room.
  value_view hold(execution_context& context, value& room) const {
    value_view view = lend(context, room);  // made where it is returned
    if (may_go(view)) view = keep(view, room);
    return view;
  }

  // The same, with bytes copied into memory that can serve again.
  value_view hold(execution_context& context, value& room, byte_buffer& bytes) const {
    value_view view = lend(context, room);  // made where it is returned
    if (may_go(view)) view = keep(view, room, bytes);
    return view;
  }

  // A look that stays good when the row is gone, and the other lists of the context: what does not lie in the view is
  // copied.
  value_view preserve(execution_context& context, value& room, byte_buffer& bytes) const {
    if (is_int64_property()) return property_->read(context, room);  // the commonest, and never borrowed
    value_view view = lend(context, room);                           // made where it is returned
    if (borrows(view)) view = keep(view, room, bytes);
    return view;
  }

  // Whether the operand is a property of int64; and the reading of its value, false for NULL.
  bool is_int64_property() const { return property_ != nullptr && property_->is_int64(); }
  bool read_int64(const execution_context& context, std::int64_t& number) const {
    return property_->read_int64(context, number);
  }

  // The value that lies in the context for this operand, if it is of this type; null where there is none.
  template <class T>
  const T* find(const execution_context& context) const {
    return context_read_ != nullptr ? std::get_if<T>(&context_read_->at(context)) : nullptr;
  }

  // The one position of the row stack that the operand reads, if it is that simple; and whether its value is just the
  // value there.
  std::optional<std::size_t> row_position() const {
    if (property_ != nullptr) return property_->position();
    return is_row_value() ? std::optional(context_read_->position()) : std::nullopt;
  }
  bool is_row_value() const { return context_read_ != nullptr && context_read_->reads_row_stack(); }

  // Appends the value to a list, made in its place where possible.
  void append_to(std::vector<value>& list, execution_context& context) const {
    if (property_ == nullptr) return append_other(list, context);
    property_->append_to(list, context);
  }

 private:
  // The same for what is no property.
  void append_other(std::vector<value>& list, execution_context& context) const;

  // Whether evaluating other operands may take away what a view shows. The core lends texts and binaries. Those of the
  // context stay where they are, but short set specifiers lie in the value itself, which moves when a host's operator
  // lets the row stack grow.
  bool may_go(const value_view& view) const {
    if (std::holds_alternative<std::u16string_view>(view)) {
      return lender_ != nullptr && (context_read_ == nullptr || is_row_value());
    }
    return (std::holds_alternative<text_view>(view) || std::holds_alternative<binary_view>(view)) &&
           lender_ != nullptr && context_read_ == nullptr;
  }
  static value_view keep(const value_view& view, value& room);
  static value_view keep(const value_view& view, value& room, byte_buffer& bytes);

  template <class Operator>
  const Operator* lender_as() const {
    static_assert(std::is_final_v<Operator>);
    return lender_ != nullptr && typeid(*lender_) == typeid(Operator) ? static_cast<const Operator*>(lender_) : nullptr;
  }

  error_handling::owned_part<operator_base, lending_operator> expression_;
  const lending_operator* lender_;          // expression_, if it lends
  const value_from_context* context_read_;  // expression_, if it only reads the context
  const property_read* property_;           // expression_, if it is one
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_HPP_
