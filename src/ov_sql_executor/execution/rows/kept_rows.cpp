#include "ov_sql_executor/execution/rows/kept_rows.hpp"

#include <cassert>

#include "ov_sql_executor/execution/rows/row_stack.hpp"

namespace ov::sql_executor {

void kept_rows::take(execution_context& context, std::size_t start) {
  std::vector<value>& stack = context.row_stack;
  assert(start <= stack.size());
  note_width(stack.size() - start);
  for (std::size_t at = start; at < stack.size(); ++at) append(stack[at]);
  cut_row_stack(context, start);
  ++size_;
}

void kept_rows::add_copy(const execution_context& context, std::size_t start) {
  const std::vector<value>& stack = context.row_stack;
  note_width(stack.size() - start);
  for (std::size_t at = start; at < stack.size(); ++at) {
    const auto* const reference = std::get_if<OV_OBJ_REF>(&stack[at]);
    if (are_references_ && reference != nullptr) {
      references_.push_back(*reference);
    } else {
      make_values();
      values_.push_back(view_of(stack[at]));
    }
  }
  ++size_;
}

void kept_rows::push_copy(std::size_t row_number, execution_context& context) const {
  const std::size_t end = first_value_of(row_number + 1);
  for (std::size_t i = first_value_of(row_number); i < end; ++i) {
    if (are_references_) {
      push_value(context, references_[i]);
    } else {
      append_value(context.row_stack, values_[i]);
    }
  }
}

std::size_t kept_rows::byte_count() const {
  return references_.byte_count() + values_.byte_count() + starts_.capacity() * sizeof(std::size_t);
}

void kept_rows::give(std::size_t row_number, execution_context& context) {
  assert(row_number < size_);
  const std::size_t end = first_value_of(row_number + 1);
  for (std::size_t i = first_value_of(row_number); i < end; ++i) {
    if (are_references_) {
      context.row_stack.emplace_back(references_[i]);
    } else {
      values_.give(i, context.row_stack);
    }
  }
}

void kept_rows::take_back(std::size_t row_number, execution_context& context, std::size_t start) {
  assert(is_on_stack(row_number, context, start));
  if (!are_references_) {
    std::size_t to = first_value_of(row_number);
    for (std::size_t at = start; at < context.row_stack.size(); ++at) values_.take_back(to++, context.row_stack[at]);
  }
  cut_row_stack(context, start);
}

void kept_rows::copy_back(std::size_t row_number, const execution_context& context, std::size_t start) {
  assert(is_on_stack(row_number, context, start));
  if (are_references_) return;
  std::size_t to = first_value_of(row_number);
  for (std::size_t at = start; at < context.row_stack.size(); ++at) values_.copy_back(to++, context.row_stack[at]);
}

void kept_rows::prefetch(std::size_t row_number) const {
  assert(row_number < size_);
  const std::size_t first = first_value_of(row_number);
  if (first == first_value_of(row_number + 1)) return;
  if (are_references_) {
    references_.prefetch(first);
  } else {
    values_.prefetch(first);
  }
}

void kept_rows::prefetch_texts(std::size_t row_number) const {
  assert(row_number < size_);
  if (are_references_) return;
  const std::size_t end = first_value_of(row_number + 1);
  for (std::size_t i = first_value_of(row_number); i < end; ++i) values_.prefetch_text(i);
}

// Nodes of this library yield rows of one width. Those of a host may not.
void kept_rows::note_width(std::size_t width) {
  if (size_ == 0) width_ = width;
  if (starts_.empty() && width != width_) {
    for (std::size_t i = 0; i <= size_; ++i) starts_.push_back(i * width_);
  }
  if (!starts_.empty()) starts_.push_back(starts_.back() + width);
}

void kept_rows::append(value& each) {
  const auto* const reference = std::get_if<OV_OBJ_REF>(&each);
  if (are_references_ && reference != nullptr) return references_.push_back(*reference);
  make_values();
  values_.push_back(each);
}

// The first value that is no reference makes values of all before it.
void kept_rows::make_values() {
  if (!are_references_) return;
  for (std::size_t i = 0; i < references_.size(); ++i) values_.push_back(value_view(references_[i]));
  references_ = {};
  are_references_ = false;
}

bool kept_rows::is_on_stack(std::size_t row_number, const execution_context& context, std::size_t start) const {
  return row_number < size_ &&
         context.row_stack.size() == start + first_value_of(row_number + 1) - first_value_of(row_number);
}

std::size_t kept_rows::first_value_of(std::size_t row_number) const {
  return starts_.empty() ? row_number * width_ : starts_[row_number];
}

}  // namespace ov::sql_executor
