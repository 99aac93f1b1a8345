#include "ov_sql_executor/expressions/operand.hpp"

#include <utility>
#include <variant>

namespace ov::sql_executor::operators {

namespace {

// Whether what a view shows are the bytes or units of the value in room.
bool lies_in(const value_view& view, const value& room) {
  if (const auto* text = std::get_if<text_view>(&view)) {
    const auto* owner = std::get_if<db_string::tt_string>(&room);
    return owner != nullptr && owner->data() == text->bytes.data();
  }
  if (const auto* binary = std::get_if<binary_view>(&view)) {
    const auto* owner = std::get_if<operator_library::Binary>(&room);
    return owner != nullptr && owner->bytes.data() == binary->bytes.data();
  }
  if (const auto* units = std::get_if<std::u16string_view>(&view)) {
    const auto* owner = std::get_if<operator_library::SetSpecifier>(&room);
    return owner != nullptr && owner->units.data() == units->data();
  }
  return false;
}

}  // namespace

value_view operand::keep(const value_view& view, value& room) {
  if (lies_in(view, room)) return view;
  room = to_value(view);
  return view_of(room);
}

value_view operand::keep(const value_view& view, value& room, byte_buffer& bytes) {
  if (lies_in(view, room)) return view;
  if (const auto* text = std::get_if<text_view>(&view)) {
    bytes.assign(text->bytes.begin(), text->bytes.end());
    return text_view{{bytes.data(), bytes.size()}};
  }
  if (const auto* binary = std::get_if<binary_view>(&view)) {
    bytes.assign(binary->bytes.begin(), binary->bytes.end());
    return binary_view{{bytes.data(), bytes.size()}};
  }
  return keep(view, room);
}

void operand::append_other(std::vector<value>& list, execution_context& context) const {
  if (lender_ == nullptr) {
    list.push_back(expression_->evaluate(context));
    return;
  }
  value room;
  const value_view view = lend(context, room);
  if (room.index() != 0 && lies_in(view, room)) {
    list.push_back(std::move(room));
  } else {
    append_value(list, view);
  }
}

}  // namespace ov::sql_executor::operators
