#include "ov_sql_executor/values/view_keeper.hpp"

#include <cstring>

namespace ov::sql_executor {

template <class Unit>
const Unit* view_keeper::copy(const Unit* units, std::size_t count) {
  if (count == 0) return nullptr;
  void* const room = memory_.allocate(count * sizeof(Unit), alignof(Unit));
  std::memcpy(room, units, count * sizeof(Unit));
  return static_cast<const Unit*>(room);
}

value_view view_keeper::keep(const value_view& view) {
  if (const auto* text = std::get_if<text_view>(&view)) {
    return text_view{{copy(text->bytes.data(), text->bytes.size()), text->bytes.size()}};
  }
  if (const auto* binary = std::get_if<binary_view>(&view)) {
    return binary_view{{copy(binary->bytes.data(), binary->bytes.size()), binary->bytes.size()}};
  }
  if (const auto* units = std::get_if<std::u16string_view>(&view)) {
    return std::u16string_view(copy(units->data(), units->size()), units->size());
  }
  if (std::holds_alternative<std::monostate>(view)) throw std::bad_variant_access();
  return view;
}

}  // namespace ov::sql_executor
