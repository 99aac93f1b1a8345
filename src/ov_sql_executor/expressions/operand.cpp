#include "ov_sql_executor/expressions/operand.hpp"

#include <variant>

namespace ov::sql_executor::operators {

namespace {

// Whether the bytes that a view shows are those of the value in room.
template <class Owner>
bool lies_in(const std::uint8_t* bytes, const value& room, const std::uint8_t* (*start)(const Owner&)) {
  const Owner* owner = std::get_if<Owner>(&room);
  return owner != nullptr && start(*owner) == bytes;
}

bool is_lent_by_core(const value_view& view, const value& room) {
  if (const auto* text = std::get_if<text_view>(&view)) {
    return !lies_in<db_string::tt_string>(text->bytes.data(), room, [](const auto& owner) { return owner.data(); });
  }
  if (const auto* binary = std::get_if<binary_view>(&view)) {
    return !lies_in<operator_library::Binary>(binary->bytes.data(), room,
                                              [](const auto& owner) { return owner.bytes.data(); });
  }
  return false;
}

}  // namespace

value_view operand::keep(const value_view& view, value& room) {
  if (!is_lent_by_core(view, room)) return view;
  room = to_value(view);
  return view_of(room);
}

value_view operand::hold(execution_context& context, value& room, std::vector<std::uint8_t>& bytes) const {
  const value_view view = lend(context, room);
  if (context_read_ != nullptr || lender_ == nullptr || !is_lent_by_core(view, room)) return view;
  if (const auto* text = std::get_if<text_view>(&view)) {
    bytes.assign(text->bytes.begin(), text->bytes.end());
    return text_view{bytes};
  }
  const auto& lent = std::get<binary_view>(view).bytes;
  bytes.assign(lent.begin(), lent.end());
  return binary_view{bytes};
}

void operand::append_to(std::vector<value>& list, execution_context& context) const {
  if (lender_ == nullptr) {
    list.push_back(expression_->evaluate(context));
    return;
  }
  value room;
  const value_view view = lender_->lend(context, room);
  append_value(list, view);
}

}  // namespace ov::sql_executor::operators
