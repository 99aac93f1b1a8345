#include "ov_sql_executor/expressions/operand.hpp"

#include <utility>
#include <variant>

namespace ov::sql_executor::operators {

namespace {

// Tells whether a view shows the bytes or units of the value in scratch.
bool lies_in(const value_view& view, const value& scratch) {
  if (const auto* text = std::get_if<text_view>(&view)) {
    const auto* owner = std::get_if<db_string::tt_string>(&scratch);
    return owner != nullptr && owner->data() == text->bytes.data();
  }
  if (const auto* binary = std::get_if<binary_view>(&view)) {
    const auto* owner = std::get_if<operator_library::Binary>(&scratch);
    return owner != nullptr && owner->bytes.data() == binary->bytes.data();
  }
  if (const auto* units = std::get_if<std::u16string_view>(&view)) {
    const auto* owner = std::get_if<operator_library::SetSpecifier>(&scratch);
    return owner != nullptr && owner->units.data() == units->data();
  }
  return false;
}

}  // namespace

value_view operand::keep(const value_view& view, value& scratch) {
  if (lies_in(view, scratch)) return view;
  scratch = to_value(view);
  return view_of(scratch);
}

value_view operand::keep(const value_view& view, scratch_space& scratch) {
  if (lies_in(view, scratch.made)) return view;
  auto& bytes = scratch.bytes;
  if (const auto* text = std::get_if<text_view>(&view)) {
    bytes.assign(text->bytes.begin(), text->bytes.end());
    return text_view{{bytes.data(), bytes.size()}};
  }
  if (const auto* binary = std::get_if<binary_view>(&view)) {
    bytes.assign(binary->bytes.begin(), binary->bytes.end());
    return binary_view{{bytes.data(), bytes.size()}};
  }
  return keep(view, scratch.made);
}

void operand::append_evaluated(std::vector<value>& list, execution_context& context) const {
  if (lender_ == nullptr) {
    list.push_back(expression_->evaluate(context));
    return;
  }
  value scratch;
  const value_view view = lend(context, scratch);
  if (scratch.index() != 0 && lies_in(view, scratch)) {
    list.push_back(std::move(scratch));
  } else {
    append_value(list, view);
  }
}

}  // namespace ov::sql_executor::operators
