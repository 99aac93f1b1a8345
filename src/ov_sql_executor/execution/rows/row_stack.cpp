#include "ov_sql_executor/execution/rows/row_stack.hpp"

#include <cassert>
#include <iterator>

namespace ov::sql_executor {

namespace {

template <class Stack>
auto at(Stack& stack, std::size_t position) {
  return stack.begin() + static_cast<std::ptrdiff_t>(position);
}

// Copies a reference over a reference, the commonest case, without the variant's dispatch.
void copy_value(const value& source, value& target) {
  const auto* reference = std::get_if<OV_OBJ_REF>(&source);
  auto* held = std::get_if<OV_OBJ_REF>(&target);
  if (reference != nullptr && held != nullptr) {
    *held = *reference;
  } else {
    target = source;
  }
}

}  // namespace

void move_onto_stack(execution_context& context, row& source) {
  for (value& each : source) append_moved(context.row_stack, each);
}

void push_nulls(execution_context& context, std::uint64_t count) {
  context.row_stack.insert(context.row_stack.end(), count, operator_library::NullValue{});
}

void move_from_stack(execution_context& context, std::size_t start, row& target) {
  assert(start <= context.row_stack.size());
  const std::size_t width = context.row_stack.size() - start;
  if (target.size() == width) {
    for (std::size_t i = 0; i < width; ++i) target[i] = std::move(context.row_stack[start + i]);
  } else {
    target.assign(std::make_move_iterator(at(context.row_stack, start)),
                  std::make_move_iterator(context.row_stack.end()));
  }
  cut_row_stack(context, start);
}

void copy_from_stack(const execution_context& context, std::size_t start, std::size_t end, row& target) {
  assert(start <= end && end <= context.row_stack.size());
  if (target.size() != end - start) target.resize(end - start);
  const value* source = context.row_stack.data() + start;
  for (value& each : target) copy_value(*source++, each);
}

}  // namespace ov::sql_executor
