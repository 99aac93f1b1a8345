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

// The caller's memory for values that lie nowhere else, and for bytes that the core lends; texts as they are in columns
// need no heap. Views may point into it.
struct scratch_space {
  value made;
  boost::container::small_vector<std::uint8_t, 64> bytes;
};

// An owned expression, and the cheapest way to its value: read where it lies in the context, lent by an operator of
// this library, or evaluated by one that is not. Which one it is, is found out once, when the tree is built.
//
//    call        gives                        valid until                         for
//    evaluate    a value                      always                              what is kept
//    append_to   a value in a list            always                              rows
//    lend        a view                       the next evaluation, or core call   the last operand of an operator
//    pin         a view; copies what would    the scratch changes, or the row     the operands before it
//                not last                     is gone
//    preserve    a view; copies all that it   the scratch changes                 rows that wait
//                borrows
//    visit       an int64 of a property as    the call returns                    aggregates
//                it is, or a view
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

  // Whether a condition holds; NULL counts as false.
  bool holds(execution_context& context) const { return test(context) == truth::yes; }

  // A look that stays good while other operands are evaluated: see may_go for what is copied into the scratch.
  value_view pin(execution_context& context, value& scratch) const {
    value_view view = lend(context, scratch);  // made where it is returned
    if (may_go(view)) view = keep(view, scratch);
    return view;
  }

  // Copies bytes into memory that can serve again.
  value_view pin(execution_context& context, scratch_space& scratch) const {
    value_view view = lend(context, scratch.made);  // made where it is returned
    if (may_go(view)) view = keep(view, scratch);
    return view;
  }

  // A look that stays good when the row is gone, and the other lists of the context: what does not lie in the view is
  // copied.
  value_view preserve(execution_context& context, scratch_space& scratch) const {
    if (is_int64_property()) return property_->read(context, scratch.made);  // the commonest, and never borrowed
    value_view view = lend(context, scratch.made);                           // made where it is returned
    if (borrows(view)) view = keep(view, scratch);
    return view;
  }

  // Calls look with the value and returns what it returns: with an int64 that a property holds, otherwise with a view.
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
  // such property. Calls order with the two numbers, or otherwise if the operands are others. The right one is
  // evaluated first. if_null: the result where one of them is NULL.
  template <class Result, class Order, class Otherwise>
  static Result compare(const operand& left, const operand& right, execution_context& context, Result if_null,
                        Order order, Otherwise otherwise) {
    if (!left.is_int64_property()) return otherwise();
    std::int64_t number = 0;
    if (const auto* found = right.find<std::int64_t>(context)) {
      return left.property_->read_int64(context, number) ? order(number, *found) : if_null;
    }
    if (const auto* found = right.find<double>(context)) {
      return left.property_->read_int64(context, number) ? order(number, *found) : if_null;
    }
    if (!right.is_int64_property()) return otherwise();
    std::int64_t other = 0;
    const bool has_right = right.property_->read_int64(context, other);
    const bool has_left = left.property_->read_int64(context, number);
    return has_left && has_right ? order(number, other) : if_null;
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
  bool is_int64_property() const { return property_ != nullptr && property_->is_int64(); }

  // The value that lies in the context for this operand, if it is of this type; null where there is none.
  template <class T>
  const T* find(const execution_context& context) const {
    return context_read_ != nullptr ? std::get_if<T>(&context_read_->at(context)) : nullptr;
  }

  // For what is no property.
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
  static value_view keep(const value_view& view, value& scratch);
  static value_view keep(const value_view& view, scratch_space& scratch);

  template <class Operator>
  const Operator* lender_as() const {
    static_assert(std::is_final_v<Operator>);
    return lender_ != nullptr && typeid(*lender_) == typeid(Operator) ? static_cast<const Operator*>(lender_) : nullptr;
  }

  owned_part<operator_base, lending_operator> expression_;
  const lending_operator* lender_;          // expression_, if it lends
  const value_from_context* context_read_;  // expression_, if it only reads the context
  const property_read* property_;           // expression_, if it is one
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_OPERAND_HPP_
