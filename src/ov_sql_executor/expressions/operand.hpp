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

// The caller's memory for values that lie nowhere else, and for bytes that the core lends. Views may point into it.
// Texts of usual length need no heap.
struct scratch_space {
  value made;
  boost::container::small_vector<std::uint8_t, 64> bytes;
};

// Owns an expression and knows the cheapest way to its value: it is read where it lies in the context, lent by an
// operator of this library, or evaluated by any other operator. The way is found once, when the tree is built.
//
//    call         gives                                valid until                           for
//    evaluate     a value                              always                                what is kept
//    append_to    a value in a list                    always                                rows
//    lend         a view                               the next evaluation or core call      the last operand
//    pin          a view; copies what would not last   scratch changes, or the row is gone   the operands before it
//    preserve     a view; copies all that it borrows   scratch changes                       rows that wait
//    visit        an int64 of a property, or a view    the call returns                      aggregates
class operand {
 public:
  explicit operand(std::unique_ptr<operator_base> expression)
      : expression_(std::move(expression)),
        lender_(expression_.own()),
        context_read_(lender_as<value_from_context>()),
        property_(lender_as<property_read>()) {}

  // Returns a value of its own.
  value evaluate(execution_context& context) const { return expression_->evaluate(context); }

  // Shows the value of the operand that is evaluated last. See lending_operator::lend.
  value_view lend(execution_context& context, value& scratch) const {
    if (property_ != nullptr) return property_->read(context, scratch);
    if (context_read_ != nullptr) return view_of(context_read_->at(context));
    if (lender_ != nullptr) return lender_->lend(context, scratch);
    scratch = expression_->evaluate(context);
    return view_of(scratch);
  }

  // See lending_operator::test.
  truth test(execution_context& context) const {
    if (lender_ != nullptr) return lender_->test(context);
    return to_truth(view_of(expression_->evaluate(context)));
  }

  // Tells whether a condition holds; NULL counts as false.
  bool holds(execution_context& context) const { return test(context) == truth::yes; }

  // Shows the value while other operands are evaluated. may_be_invalidated says what is copied into scratch.
  value_view pin(execution_context& context, value& scratch) const {
    value_view view = lend(context, scratch);  // made where it is returned
    if (may_be_invalidated(view)) view = keep(view, scratch);
    return view;
  }

  // Shows the value in the same way, but copies bytes into memory that serves again.
  value_view pin(execution_context& context, scratch_space& scratch) const {
    value_view view = lend(context, scratch.made);  // made where it is returned
    if (may_be_invalidated(view)) view = keep(view, scratch);
    return view;
  }

  // Shows the value when the row and the other lists of the context are gone: copies what does not lie in the view.
  value_view preserve(execution_context& context, scratch_space& scratch) const {
    if (is_int64_property()) return property_->read(context, scratch.made);  // the commonest, and never borrowed
    value_view view = lend(context, scratch.made);                           // made where it is returned
    if (borrows(view)) view = keep(view, scratch);
    return view;
  }

  // Calls look with an int64 that a property holds, otherwise with a view, and returns what it returns.
  template <class Look>
  auto visit(execution_context& context, Look look) const {
    if (is_int64_property()) {
      std::int64_t number = 0;
      return property_->read_int64(context, number) ? look(number) : look(value_view(operator_library::NullValue{}));
    }
    value scratch;
    return look(lend(context, scratch));
  }

  // Compares the commonest operands without views: a property of int64 with a number of the context, or with another
  // such property. Calls order with the two numbers, or otherwise for other operands. Evaluates the right one first.
  // Returns if_null where one of them is NULL.
  template <class Result, class Order, class Otherwise>
  static Result compare(const operand& left, const operand& right, execution_context& context, Result if_null,
                        Order order, Otherwise otherwise) {
    if (!left.is_int64_property()) return otherwise();
    std::int64_t number = 0;
    if (const auto* found = right.find_in_context<std::int64_t>(context)) {
      return left.property_->read_int64(context, number) ? order(number, *found) : if_null;
    }
    if (const auto* found = right.find_in_context<double>(context)) {
      return left.property_->read_int64(context, number) ? order(number, *found) : if_null;
    }
    if (!right.is_int64_property()) return otherwise();
    std::int64_t other = 0;
    const bool has_right = right.property_->read_int64(context, other);
    const bool has_left = left.property_->read_int64(context, number);
    return has_left && has_right ? order(number, other) : if_null;
  }

  // Returns the position of the row stack that the operand reads, if it reads just one. is_row_value tells whether its
  // value is the value there.
  std::optional<std::size_t> row_position() const {
    if (property_ != nullptr) return property_->position();
    return is_row_value() ? std::optional(context_read_->position()) : std::nullopt;
  }
  bool is_row_value() const { return context_read_ != nullptr && context_read_->reads_row_stack(); }

  // Appends the value to a list, where it is built if possible.
  void append_to(std::vector<value>& list, execution_context& context) const {
    if (property_ == nullptr) return append_evaluated(list, context);
    property_->append_to(list, context);
  }

 private:
  bool is_int64_property() const { return property_ != nullptr && property_->is_int64(); }

  // Returns the operand's value where it lies in the context; null where it does not, or is of another type.
  template <class T>
  const T* find_in_context(const execution_context& context) const {
    return context_read_ != nullptr ? std::get_if<T>(&context_read_->at(context)) : nullptr;
  }

  // Appends the value of an operand that is no property.
  void append_evaluated(std::vector<value>& list, execution_context& context) const;

  // Tells whether the evaluation of other operands may invalidate a view. The core lends texts and binaries until its
  // next call. Those of the context stay where they are. But short set specifiers lie in the value itself, which moves
  // when a host's operator lets the row stack grow.
  bool may_be_invalidated(const value_view& view) const {
    if (std::holds_alternative<std::u16string_view>(view)) {
      return lender_ != nullptr && (context_read_ == nullptr || is_row_value());
    }
    return (std::holds_alternative<text_view>(view) || std::holds_alternative<binary_view>(view)) &&
           lender_ != nullptr && context_read_ == nullptr;
  }
  static value_view keep(const value_view& view, value& scratch);
  static value_view keep(const value_view& view, scratch_space& scratch);

  template <class Operator>
  const Operator* lender_as() const {
    static_assert(std::is_final_v<Operator>);
    return lender_ != nullptr && typeid(*lender_) == typeid(Operator) ? static_cast<const Operator*>(lender_) : nullptr;
  }

  owned_part<operator_base, lending_operator> expression_;
  const lending_operator* lender_;          // expression_ if it lends, else null
  const value_from_context* context_read_;  // if it only reads the context
  const property_read* property_;           // if it is a property
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_HPP_
